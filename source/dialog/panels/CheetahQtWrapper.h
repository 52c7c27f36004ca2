#pragma once
// CheetahQtWrapper: the "Cheetah" page. Each slider stores its value through
// the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/CheetahTexture3D.h"
#include "ui_CheetahWidget.h"

namespace gritwell {

class CheetahQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit CheetahQtWrapper(CheetahTexture3D* texture, ImageArea* imageArea, Ui_CheetahWidget* ui, QWidget* page,
                              QObject* parent);
    ~CheetahQtWrapper() override = default;

    // The three sliders from the texture's fields, then the interactive-update
    // button and the tracking of this page's sliders.
    void updateUI() override;
    // Slider tracking of the Cheetah sliders.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void spotSizeChanged(int value);
    void layoutVariabilityChanged(int value);
    void spotVariabilityChanged(int value);

private:
    Ui_CheetahWidget* ui_;
    CheetahTexture3D* texture_;
};

}  // namespace gritwell
