#pragma once
// SnakeskinQtWrapper: the "Snakeskin" page. Each control stores its value
// through the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/SnakeskinTexture3D.h"
#include "ui_SnakeskinWidget.h"

namespace gritwell {

class SnakeskinQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit SnakeskinQtWrapper(SnakeskinTexture3D* texture, ImageArea* imageArea, Ui_SnakeskinWidget* ui,
                                QWidget* page, QObject* parent);
    ~SnakeskinQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking and spin-box keyboard tracking of the Snakeskin controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void gridWidthChanged(int value);  // the groove width
    void randomizeColorsToggled(bool on);
    void minColorChanged(int value);  // pushes Maximum up to stay >= Minimum
    void maxColorChanged(int value);  // pulls Minimum down to stay <= Maximum
    void scaleVariabilityEnableToggled(bool on);
    void scaleVariabilityFrequencyChanged(int value);
    void scaleVariabilityAmplitudeChanged(int value);
    void scaleNoiseAddToggled(bool on);
    void scaleNoiseOctavesChanged(int octaves);
    void scaleNoiseLacunarityChanged(double value);
    void scaleNoiseGainChanged(double value);
    void scaleNoiseDetailChanged(double value);
    void roundCornersEnableToggled(bool on);
    void roundCornersLeftRightRadiusChanged(int value);
    void roundCornersTopBottomRadiusChanged(int value);

private:
    Ui_SnakeskinWidget* ui_;
    SnakeskinTexture3D* texture_;
};

}  // namespace gritwell
