#pragma once
// ErodedQtWrapper: the "Erosion" page. The scale and the magnitude of the channels
// go to the texture's setters and then to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/ErodedTexture3D.h"
#include "ui_ErodedWidget.h"

namespace gritwell {

class ErodedQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit ErodedQtWrapper(ErodedTexture3D* texture, ImageArea* imageArea, Ui_ErodedWidget* ui, QWidget* page,
                             QObject* parent);
    ~ErodedQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Keyboard tracking of the two spin boxes.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    // Hides the common block's overall-scale slot of the same name; each is
    // connected through its own class.
    void scaleChanged(double value);
    void magnitudeChanged(double value);

private:
    Ui_ErodedWidget* ui_;
    ErodedTexture3D* texture_;
};

}  // namespace gritwell
