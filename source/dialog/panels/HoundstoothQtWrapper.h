#pragma once
// HoundstoothQtWrapper: the "Houndstooth" page. Each control stores its value
// through the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/HoundstoothTexture3D.h"
#include "ui_HoundstoothWidget.h"

namespace gritwell {

class HoundstoothQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit HoundstoothQtWrapper(HoundstoothTexture3D* texture, ImageArea* imageArea, Ui_HoundstoothWidget* ui,
                                  QWidget* page, QObject* parent);
    ~HoundstoothQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's slider.
    void updateUI() override;
    // Slider tracking of the variability slider.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void patternChanged(int index);
    void randomizeColorsToggled(bool on);
    void variabilityChanged(int value);

private:
    Ui_HoundstoothWidget* ui_;
    HoundstoothTexture3D* texture_;
};

}  // namespace gritwell
