#pragma once
// GradientQtWrapper: the "Gradient" page, three axis toggles. Each stores
// its state through the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/GradientTexture3D.h"
#include "ui_GradientWidget.h"

namespace gritwell {

class GradientQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit GradientQtWrapper(GradientTexture3D* texture, ImageArea* imageArea, Ui_GradientWidget* ui,
                               QWidget* page, QObject* parent);
    ~GradientQtWrapper() override = default;

    // The three toggles from the texture's flags, then the interactive-update
    // button.
    void updateUI() override;
    // The page has neither sliders nor spin boxes: a toggle reports once per
    // click whatever the setting, so there is nothing to switch.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void xDirToggled(bool on);
    void yDirToggled(bool on);
    void zDirToggled(bool on);

private:
    Ui_GradientWidget* ui_;
    GradientTexture3D* texture_;
};

}  // namespace gritwell
