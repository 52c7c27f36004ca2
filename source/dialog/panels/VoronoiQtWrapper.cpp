#include "dialog/panels/VoronoiQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

VoronoiQtWrapper::VoronoiQtWrapper(VoronoiTexture3D* texture, ImageArea* imageArea, Ui_VoronoiWidget* ui, QWidget* page,
                                   QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &VoronoiQtWrapper::interactiveUpdateToggled);
    connect(ui_->scale, &QDoubleSpinBox::valueChanged, this, &VoronoiQtWrapper::scaleChanged);
    connect(ui_->type, &QComboBox::currentIndexChanged, this, &VoronoiQtWrapper::typeChanged);
    connect(ui_->distanceMethod, &QComboBox::currentIndexChanged, this, &VoronoiQtWrapper::distanceMethodChanged);
    describeControls();
}

void VoronoiQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        // A stored type or metric outside the lists leaves its combo blank.
        const QSignalBlocker b0(ui_->scale), b1(ui_->type), b2(ui_->distanceMethod);
        ui_->scale->setValue(texture_->scale());
        ui_->type->setCurrentIndex(texture_->type());
        ui_->distanceMethod->setCurrentIndex(texture_->distanceMethod());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void VoronoiQtWrapper::setInteractivity(bool on) { ui_->scale->setKeyboardTracking(on); }

void VoronoiQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void VoronoiQtWrapper::scaleChanged(double value) {
    texture_->setScale(static_cast<float>(value));
    redraw();
}

// Both combos list their labels in the order of the stored values.
void VoronoiQtWrapper::typeChanged(int index) {
    texture_->setType(static_cast<Voronoi::VoronoiType>(index));
    redraw();
}

void VoronoiQtWrapper::distanceMethodChanged(int index) {
    texture_->setDistanceMethod(static_cast<Voronoi::DistanceMethod>(index));
    redraw();
}

}  // namespace gritwell
