#pragma once
// NestedShapesQtWrapper: the "Nested Shapes" page. The shape list shows
// labels in its own order, not in the order of the stored shape numbers: the
// panel maps the chosen label to the number and back.

#include <QString>

#include "dialog/QtWrapperBase.h"
#include "textures/NestedShapesTexture3D.h"
#include "ui_NestedShapesWidget.h"

namespace gritwell {

class NestedShapesQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit NestedShapesQtWrapper(NestedShapesTexture3D* texture, ImageArea* imageArea, Ui_NestedShapesWidget* ui,
                                   QWidget* page, QObject* parent);
    ~NestedShapesQtWrapper() override = default;

    // Every control from the texture's fields (a stored shape number no label
    // stands for leaves the list blank), then the interactive-update button
    // and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking of the thickness slider.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    // "Sphere", "Cylinder" and "Cube" by name, any other text the square tube.
    void shapeTypeChanged(const QString& label);
    void thicknessChanged(int value);  // 0..1 on 0..100

private:
    Ui_NestedShapesWidget* ui_;
    NestedShapesTexture3D* texture_;
};

}  // namespace gritwell
