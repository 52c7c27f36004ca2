#pragma once
// PerlinQtWrapper: the "Perlin Noise" page. Each control stores its value
// through the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/PerlinTexture3D.h"
#include "ui_PerlinWidget.h"

namespace gritwell {

class PerlinQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit PerlinQtWrapper(PerlinTexture3D* texture, ImageArea* imageArea, Ui_PerlinWidget* ui, QWidget* page,
                             QObject* parent);
    ~PerlinQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking and spin-box keyboard tracking of the Perlin controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void octavesChanged(int value);
    void frequencyChanged(int value);  // 0..1600 for 0..16
    void amplitudeChanged(int value);  // 0..400 for 0..4

private:
    Ui_PerlinWidget* ui_;
    PerlinTexture3D* texture_;
};

}  // namespace gritwell
