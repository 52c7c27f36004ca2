#include "dialog/panels/NestedShapesQtWrapper.h"

#include <QCoreApplication>
#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// A shell one unit thick already fills the space: 0..1 on a 0..100 slider.
constexpr SliderScale kHundredths(100);

// The list's labels are translated in the form's context, so they are
// compared in that same context.
constexpr const char* kFormContext = "NestedShapesWidget";
struct ShapeLabel {
    const char* label;
    NestedShapesTexture3D::ShapeType shape;
};
constexpr ShapeLabel kShapeLabels[] = {
    {QT_TRANSLATE_NOOP("NestedShapesWidget", "Sphere"), NestedShapesTexture3D::Sphere},
    {QT_TRANSLATE_NOOP("NestedShapesWidget", "Cylinder"), NestedShapesTexture3D::Cylinder},
    {QT_TRANSLATE_NOOP("NestedShapesWidget", "Cube"), NestedShapesTexture3D::Cube},
    {QT_TRANSLATE_NOOP("NestedShapesWidget", "Square Tube"), NestedShapesTexture3D::SquareTube},
};

QString translated(const char* label) { return QCoreApplication::translate(kFormContext, label); }

// The square tube takes every text the other three do not, its own included.
NestedShapesTexture3D::ShapeType shapeForLabel(const QString& label) {
    for (const ShapeLabel& s : kShapeLabels)
        if (s.shape != NestedShapesTexture3D::SquareTube && label == translated(s.label)) return s.shape;
    return NestedShapesTexture3D::SquareTube;
}

// Empty for a stored number no label stands for.
QString labelForShape(NestedShapesTexture3D::ShapeType shape) {
    for (const ShapeLabel& s : kShapeLabels)
        if (s.shape == shape) return translated(s.label);
    return QString();
}
}  // namespace

NestedShapesQtWrapper::NestedShapesQtWrapper(NestedShapesTexture3D* texture, ImageArea* imageArea,
                                             Ui_NestedShapesWidget* ui, QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this,
            &NestedShapesQtWrapper::interactiveUpdateToggled);
    connect(ui_->shapeType, &QComboBox::currentTextChanged, this, &NestedShapesQtWrapper::shapeTypeChanged);
    connect(ui_->thickness, &QSlider::valueChanged, this, &NestedShapesQtWrapper::thicknessChanged);
    addValueBoxes(kHundredths, {ui_->thickness});
    describeControls();
}

void NestedShapesQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->shapeType);
        ui_->shapeType->setCurrentIndex(ui_->shapeType->findText(labelForShape(texture_->getShapeType())));
        loadSlider(ui_->thickness, texture_->getThickness());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void NestedShapesQtWrapper::setInteractivity(bool on) { ui_->thickness->setTracking(on); }

void NestedShapesQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void NestedShapesQtWrapper::shapeTypeChanged(const QString& label) {
    texture_->setShapeType(shapeForLabel(label));
    redraw();
}

void NestedShapesQtWrapper::thicknessChanged(int value) {
    texture_->setThickness(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
