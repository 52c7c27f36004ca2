#pragma once
// SpheresQtWrapper: the "Spheres" page. Each control stores its value
// through the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/SpheresTexture3D.h"
#include "ui_SpheresWidget.h"

namespace gritwell {

class SpheresQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit SpheresQtWrapper(SpheresTexture3D* texture, ImageArea* imageArea, Ui_SpheresWidget* ui, QWidget* page,
                              QObject* parent);
    ~SpheresQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking of the two sliders.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void sphereSizeChanged(int value);
    void staggeredToggled(bool on);
    void hollownessChanged(int value);

private:
    Ui_SpheresWidget* ui_;
    SpheresTexture3D* texture_;
};

}  // namespace gritwell
