#include "dialog/QtWrapperBase.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QWidget>

#include "core/FloatToInt.h"
#include "core/Texture3D.h"
#include "dialog/HostLink.h"
#include "ui_CommonWidget.h"

namespace gritwell {

namespace {

constexpr int kRecordBufferSize = 256;

// The common block sits at the bottom of a page whose form stacks its
// controls vertically.
constexpr int kStretchAboveCommonBlock = 10;

// Control value from a stored word: the product in double precision,
// truncated toward zero.
int toSlider(float word, double unitsPerWord) {
    return truncToInt(unitsPerWord * static_cast<double>(word));
}

}  // namespace

QtWrapperBase::QtWrapperBase(Texture3D* texture, ImageArea* imageArea, QWidget* page, QObject* parent)
    : QObject(parent), t3D_(texture), imageArea_(imageArea), commonUi_(new Ui_CommonWidget) {
    // Forms give their page a vertical layout; a page without one gets it here.
    if (page->layout() == nullptr) new QVBoxLayout(page);
    if (auto* box = qobject_cast<QBoxLayout*>(page->layout())) box->addStretch(kStretchAboveCommonBlock);

    auto* common = new QWidget(nullptr, Qt::WindowFlags());
    commonUi_->setupUi(common);
    page->layout()->addWidget(common);

    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &QtWrapperBase::interactiveUpdateToggled);
    connect(commonUi_->transX, &QSlider::valueChanged, this, &QtWrapperBase::transXChanged);
    connect(commonUi_->transY, &QSlider::valueChanged, this, &QtWrapperBase::transYChanged);
    connect(commonUi_->transZ, &QSlider::valueChanged, this, &QtWrapperBase::transZChanged);
    connect(commonUi_->rotX, &QSlider::valueChanged, this, &QtWrapperBase::rotXChanged);
    connect(commonUi_->rotY, &QSlider::valueChanged, this, &QtWrapperBase::rotYChanged);
    connect(commonUi_->rotZ, &QSlider::valueChanged, this, &QtWrapperBase::rotZChanged);
    connect(commonUi_->overallScale, &QDoubleSpinBox::valueChanged, this, &QtWrapperBase::scaleChanged);
    connect(commonUi_->scaleX, &QSlider::valueChanged, this, &QtWrapperBase::scaleXChanged);
    connect(commonUi_->scaleY, &QSlider::valueChanged, this, &QtWrapperBase::scaleYChanged);
    connect(commonUi_->scaleZ, &QSlider::valueChanged, this, &QtWrapperBase::scaleZChanged);
}

QtWrapperBase::~QtWrapperBase() { delete commonUi_; }

void QtWrapperBase::setTransforms(const TransformData& t) {
    transforms_ = t;
    commonUi_->transX->setValue(toSlider(t.xOffset, 100.0));
    commonUi_->transY->setValue(toSlider(t.yOffset, 100.0));
    commonUi_->transZ->setValue(toSlider(t.zOffset, 100.0));
    commonUi_->rotX->setValue(toSlider(t.xAngle, 360.0));
    commonUi_->rotY->setValue(toSlider(t.yAngle, 360.0));
    commonUi_->rotZ->setValue(toSlider(t.zAngle, 360.0));
    commonUi_->overallScale->setValue(t.overallScale);
    commonUi_->scaleX->setValue(toSlider(t.xScale, 100.0));
    commonUi_->scaleY->setValue(toSlider(t.yScale, 100.0));
    commonUi_->scaleZ->setValue(toSlider(t.zScale, 100.0));
}

void QtWrapperBase::getTransforms(TransformData& out) const { out = transforms_; }

void QtWrapperBase::redraw() {
    char record[kRecordBufferSize] = {};
    t3D_->getDescription(record);
    char transformBytes[sizeof(TransformData)];
    transforms_.toBytes(transformBytes);

    QCoreApplication::processEvents();
    HostLink::send(record, transformBytes);
    QCoreApplication::processEvents();
}

// Offsets and angles divide in double precision, the per-axis scales in
// single precision: the host has always received exactly these words.
void QtWrapperBase::transXChanged(int value) {
    transforms_.xOffset = static_cast<float>(value / 100.0);
    redraw();
}

void QtWrapperBase::transYChanged(int value) {
    transforms_.yOffset = static_cast<float>(value / 100.0);
    redraw();
}

void QtWrapperBase::transZChanged(int value) {
    transforms_.zOffset = static_cast<float>(value / 100.0);
    redraw();
}

void QtWrapperBase::rotXChanged(int value) {
    transforms_.xAngle = static_cast<float>(value / 360.0);
    redraw();
}

void QtWrapperBase::rotYChanged(int value) {
    transforms_.yAngle = static_cast<float>(value / 360.0);
    redraw();
}

void QtWrapperBase::rotZChanged(int value) {
    transforms_.zAngle = static_cast<float>(value / 360.0);
    redraw();
}

void QtWrapperBase::scaleChanged(double value) {
    transforms_.overallScale = static_cast<float>(value);
    redraw();
}

void QtWrapperBase::scaleXChanged(int value) {
    transforms_.xScale = static_cast<float>(value) / 100.0f;
    redraw();
}

void QtWrapperBase::scaleYChanged(int value) {
    transforms_.yScale = static_cast<float>(value) / 100.0f;
    redraw();
}

void QtWrapperBase::scaleZChanged(int value) {
    transforms_.zScale = static_cast<float>(value) / 100.0f;
    redraw();
}

void QtWrapperBase::interactiveUpdateToggled(bool on) {
    for (QSlider* slider : {commonUi_->transX, commonUi_->transY, commonUi_->transZ, commonUi_->rotX, commonUi_->rotY,
                            commonUi_->rotZ, commonUi_->scaleX, commonUi_->scaleY, commonUi_->scaleZ})
        slider->setTracking(on);
    commonUi_->overallScale->setKeyboardTracking(on);
}

}  // namespace gritwell
