#pragma once
// SpiralQtWrapper: the "Spiral" page. Each control stores its value through
// the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/SpiralTexture3D.h"
#include "ui_SpiralWidget.h"

namespace gritwell {

class SpiralQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit SpiralQtWrapper(SpiralTexture3D* texture, ImageArea* imageArea, Ui_SpiralWidget* ui, QWidget* page,
                             QObject* parent);
    ~SpiralQtWrapper() override = default;

    // Both controls from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking and spin-box keyboard tracking of the Spiral controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void stripeWidthChanged(int value);
    void spiralRateChanged(double value);

private:
    Ui_SpiralWidget* ui_;
    SpiralTexture3D* texture_;
};

}  // namespace gritwell
