#pragma once
// BrickQtWrapper: the "Brick" page. Each control stores its value through
// the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/BrickTexture3D.h"
#include "ui_BrickWidget.h"

namespace gritwell {

class BrickQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit BrickQtWrapper(BrickTexture3D* texture, ImageArea* imageArea, Ui_BrickWidget* ui, QWidget* page,
                   QObject* parent);
    ~BrickQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking and spin-box keyboard tracking of the Brick controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void patternChanged(int index);
    void brickWidthChanged(double value);
    void brickHeightChanged(double value);
    void brickDepthChanged(double value);
    void mortarThicknessChanged(double value);
    void roundedCornersEnableToggled(bool on);
    void roundedCornersRadiusChanged(int value);
    void brickColorChanged(int value);
    void mortarColorChanged(int value);
    void randomizeColorsToggled(bool on);
    void minColorChanged(int value);  // pushes Maximum up to stay >= Minimum
    void maxColorChanged(int value);  // pulls Minimum down to stay <= Maximum
    void rowOffsetVariabilityEnableToggled(bool on);
    void rowOffsetVariabilityAmplitudeChanged(int value);

private:
    Ui_BrickWidget* ui_;
    BrickTexture3D* texture_;
};

}  // namespace gritwell
