#pragma once
// SpeckledStoneQtWrapper: the "Speckled Stone" page. The speck size, the
// shading steps and the two intensities go to the texture's setters and then
// to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/SpeckledStoneTexture3D.h"
#include "ui_SpeckledStoneWidget.h"

namespace gritwell {

class SpeckledStoneQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit SpeckledStoneQtWrapper(SpeckledStoneTexture3D* texture, ImageArea* imageArea, Ui_SpeckledStoneWidget* ui,
                                    QWidget* page, QObject* parent);
    ~SpeckledStoneQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Keyboard tracking of the three spin boxes, slider tracking of the two
    // sliders.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    // Hides the common block's overall-scale slot of the same name; each is
    // connected through its own class.
    void scaleChanged(double value);
    void nShadesChanged(int value);   // a count, stored as is
    void exponentChanged(int value);  // a whole power, stored as is
    void grainColorChanged(int value);
    void baseColorChanged(int value);

private:
    Ui_SpeckledStoneWidget* ui_;
    SpeckledStoneTexture3D* texture_;
};

}  // namespace gritwell
