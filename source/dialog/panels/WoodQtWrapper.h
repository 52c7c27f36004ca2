#pragma once
// WoodQtWrapper: the "Wood" page. Each control stores its value through the
// texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/WoodTexture3D.h"
#include "ui_WoodWidget.h"

namespace gritwell {

class WoodQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit WoodQtWrapper(WoodTexture3D* texture, ImageArea* imageArea, Ui_WoodWidget* ui, QWidget* page,
                           QObject* parent);
    ~WoodQtWrapper() override = default;

    // Every control from the texture's fields (the ring scale as the whole
    // number the texture reports), then the interactive-update button and
    // the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking and spin-box keyboard tracking of the Wood controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void ringScaleChanged(double value);
    void octavesChanged(int value);
    void frequencyChanged(int value);  // 0..1000 for 0..10
    void amplitudeChanged(int value);
    void darkColorChanged(int value);
    void lightColorChanged(int value);

private:
    Ui_WoodWidget* ui_;
    WoodTexture3D* texture_;
};

}  // namespace gritwell
