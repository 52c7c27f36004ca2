#pragma once
// TurbulenceQtWrapper: the "Turbulence" page. The octave count, the octave
// steps and the scale of the sum of absolute noise go to the texture's
// setters and then to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/TurbulenceTexture3D.h"
#include "ui_TurbulenceWidget.h"

namespace gritwell {

class TurbulenceQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit TurbulenceQtWrapper(TurbulenceTexture3D* texture, ImageArea* imageArea, Ui_TurbulenceWidget* ui,
                                 QWidget* page, QObject* parent);
    ~TurbulenceQtWrapper() override = default;

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
    Ui_TurbulenceWidget* ui_;
    TurbulenceTexture3D* texture_;
};

}  // namespace gritwell
