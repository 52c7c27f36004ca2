#pragma once
// ZigzagQtWrapper: the "Zigzag" page. Each control stores its value through
// the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/ZigzagTexture3D.h"
#include "ui_ZigzagWidget.h"

namespace gritwell {

class ZigzagQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit ZigzagQtWrapper(ZigzagTexture3D* texture, ImageArea* imageArea, Ui_ZigzagWidget* ui, QWidget* page,
                             QObject* parent);
    ~ZigzagQtWrapper() override = default;

    // Both controls from the texture's fields, then the interactive-update
    // button and the tracking of this page's slider.
    void updateUI() override;
    // Slider tracking of the variability slider.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void randomizeColorsToggled(bool on);
    void variabilityChanged(int value);

private:
    Ui_ZigzagWidget* ui_;
    ZigzagTexture3D* texture_;
};

}  // namespace gritwell
