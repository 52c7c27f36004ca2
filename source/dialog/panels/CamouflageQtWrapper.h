#pragma once
// CamouflageQtWrapper: the "Camouflage" page. Each control stores its value
// through the texture's setter and sends the change to the host. The two
// layer intensities have no control; they keep what the record holds.

#include "dialog/QtWrapperBase.h"
#include "textures/CamouflageTexture3D.h"
#include "ui_CamouflageWidget.h"

namespace gritwell {

class CamouflageQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit CamouflageQtWrapper(CamouflageTexture3D* texture, ImageArea* imageArea, Ui_CamouflageWidget* ui,
                                 QWidget* page, QObject* parent);
    ~CamouflageQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking and spin-box keyboard tracking of the Camouflage controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void frequencyChanged(double value);
    void thresholdChanged(int value);
    void baseColorChanged(int value);

private:
    Ui_CamouflageWidget* ui_;
    CamouflageTexture3D* texture_;
};

}  // namespace gritwell
