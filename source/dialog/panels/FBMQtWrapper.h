#pragma once
// FBMQtWrapper: the "FBM" page. The octave count, the octave steps and the
// scale of the fractal Brownian motion go to the texture's setters and then
// to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/FBMTexture3D.h"
#include "ui_FBMWidget.h"

namespace gritwell {

class FBMQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit FBMQtWrapper(FBMTexture3D* texture, ImageArea* imageArea, Ui_FBMWidget* ui, QWidget* page,
                          QObject* parent);
    ~FBMQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Keyboard tracking of the four spin boxes.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void octavesChanged(int value);  // a count, stored as is
    void lacunarityChanged(double value);
    void gainChanged(double value);
    // Hides the common block's overall-scale slot of the same name; each is
    // connected through its own class.
    void scaleChanged(double value);

private:
    Ui_FBMWidget* ui_;
    FBMTexture3D* texture_;
};

}  // namespace gritwell
