#pragma once
// VoronoiQtWrapper: the "Voronoi" page. The scale, the distance combination
// and the metric go to the texture's setters and then to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/VoronoiTexture3D.h"
#include "ui_VoronoiWidget.h"

namespace gritwell {

class VoronoiQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit VoronoiQtWrapper(VoronoiTexture3D* texture, ImageArea* imageArea, Ui_VoronoiWidget* ui, QWidget* page,
                              QObject* parent);
    ~VoronoiQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Keyboard tracking of the scale spin box.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    // Hides the common block's overall-scale slot of the same name; each is
    // connected through its own class.
    void scaleChanged(double value);
    void typeChanged(int index);
    void distanceMethodChanged(int index);

private:
    Ui_VoronoiWidget* ui_;
    VoronoiTexture3D* texture_;
};

}  // namespace gritwell
