#pragma once
// ScalesQtWrapper: the "Scales" page. Each control stores its value through
// the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/ScalesTexture3D.h"
#include "ui_ScalesWidget.h"

namespace gritwell {

class ScalesQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit ScalesQtWrapper(ScalesTexture3D* texture, ImageArea* imageArea, Ui_ScalesWidget* ui, QWidget* page,
                             QObject* parent);
    ~ScalesQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking of the Scales controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void scaleShapeChanged(int index);
    void baseDimensionChanged(int value);  // in 1/200, so the slider spans 0..0.5
    void edgeDimensionChanged(int value);
    void shadingAlongEnableToggled(bool on);
    void shadingAlongStrengthChanged(int value);
    void shadingAcrossEnableToggled(bool on);
    void shadingAcrossStrengthChanged(int value);
    void scaleVariabilityEnableToggled(bool on);
    void scaleVariabilityFrequencyChanged(int value);
    void scaleVariabilityAmplitudeChanged(int value);
    // Each of the three Minimum sliders pushes its Maximum up to stay above
    // it, and each Maximum pulls its Minimum down.
    void baseColorChanged(int value);
    void baseRandomizeColorsToggled(bool on);
    void baseMinColorChanged(int value);
    void baseMaxColorChanged(int value);
    void bodyColorChanged(int value);
    void bodyRandomizeColorsToggled(bool on);
    void bodyMinColorChanged(int value);
    void bodyMaxColorChanged(int value);
    void edgeColorChanged(int value);
    void edgeRandomizeColorsToggled(bool on);
    void edgeMinColorChanged(int value);
    void edgeMaxColorChanged(int value);

private:
    Ui_ScalesWidget* ui_;
    ScalesTexture3D* texture_;
};

}  // namespace gritwell
