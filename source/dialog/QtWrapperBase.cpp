#include "dialog/QtWrapperBase.h"

#include <vector>

#include <QAbstractSpinBox>
#include <QBoxLayout>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QWidget>

#include "core/Texture3D.h"
#include "dialog/HostLink.h"
#include "dialog/SliderValueBox.h"
#include "ui_CommonWidget.h"

namespace gritwell {

namespace {

constexpr int kRecordBufferSize = 256;

// The common block sits at the bottom of a page whose form stacks its
// controls vertically.
constexpr int kStretchAboveCommonBlock = 10;

// Offsets in hundredths of a texture unit and angles in whole degrees
// divide in double precision, the per-axis scales (hundredths) in single
// precision: the host has always received exactly these words.
constexpr SliderScale kOffset(100, SliderScale::Division::Double);
constexpr SliderScale kAngle(360, SliderScale::Division::Double, 1);
constexpr SliderScale kAxisScale(100);

// "Range 0.00 to 1.00, default 0.50.", each number as the spin box writes it.
QString rangeAndDefault(const QAbstractSpinBox* spin) {
    const auto line = [](const QString& minimum, const QString& maximum, const QString& value) {
        return QtWrapperBase::tr("Range %1 to %2, default %3.").arg(minimum, maximum, value);
    };
    if (const auto* box = qobject_cast<const QDoubleSpinBox*>(spin)) {
        const auto text = [box](double v) { return box->textFromValue(v) + box->suffix(); };
        return line(text(box->minimum()), text(box->maximum()), text(box->value()));
    }
    if (const auto* box = qobject_cast<const QSpinBox*>(spin)) {
        const auto text = [box](int v) { return box->locale().toString(v) + box->suffix(); };
        return line(text(box->minimum()), text(box->maximum()), text(box->value()));
    }
    return QString();
}

}  // namespace

QtWrapperBase::QtWrapperBase(Texture3D* texture, ImageArea* imageArea, QWidget* page, QObject* parent)
    : QObject(parent), t3D_(texture), imageArea_(imageArea), commonUi_(new Ui_CommonWidget), page_(page) {
    // Forms give their page a vertical layout; a page without one gets it here.
    if (page->layout() == nullptr) new QVBoxLayout(page);
    if (auto* box = qobject_cast<QBoxLayout*>(page->layout())) box->addStretch(kStretchAboveCommonBlock);

    auto* common = new QWidget(nullptr, Qt::WindowFlags());
    commonUi_->setupUi(common);
    page->layout()->addWidget(common);
    for (QAbstractSpinBox* spin : page->findChildren<QAbstractSpinBox*>()) spin->installEventFilter(this);
    addValueBoxes(kOffset, {commonUi_->transX, commonUi_->transY, commonUi_->transZ});
    addValueBoxes(kAngle, {commonUi_->rotX, commonUi_->rotY, commonUi_->rotZ}, QStringLiteral("\u00B0"));
    addValueBoxes(kAxisScale, {commonUi_->scaleX, commonUi_->scaleY, commonUi_->scaleZ});

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
    commonUi_->transX->setValue(kOffset.position(t.xOffset));
    commonUi_->transY->setValue(kOffset.position(t.yOffset));
    commonUi_->transZ->setValue(kOffset.position(t.zOffset));
    commonUi_->rotX->setValue(kAngle.position(t.xAngle));
    commonUi_->rotY->setValue(kAngle.position(t.yAngle));
    commonUi_->rotZ->setValue(kAngle.position(t.zAngle));
    commonUi_->overallScale->setValue(t.overallScale);
    commonUi_->scaleX->setValue(kAxisScale.position(t.xScale));
    commonUi_->scaleY->setValue(kAxisScale.position(t.yScale));
    commonUi_->scaleZ->setValue(kAxisScale.position(t.zScale));
}

void QtWrapperBase::getTransforms(TransformData& out) const { out = transforms_; }

void QtWrapperBase::addValueBoxes(const SliderScale& scale, std::initializer_list<QSlider*> sliders,
                                  const QString& suffix) {
    for (QSlider* slider : sliders) (new SliderValueBox(slider, scale, suffix))->installEventFilter(this);
}

void QtWrapperBase::describeControls() {
    // What each control shows at the defaults is what updateUI() makes of
    // them: load them with every signal of the page held back, so that
    // nothing reaches the texture or the host, and leave the interactive
    // update button as it was (its first real load decides it).
    QPushButton* interactive = commonUi_->newInteractiveUpdate;
    const bool wasChecked = interactive->isChecked();
    {
        const auto widgets = page_->findChildren<QWidget*>();
        std::vector<QSignalBlocker> quiet;
        quiet.reserve(static_cast<std::size_t>(widgets.size()));
        for (QWidget* w : widgets) quiet.emplace_back(w);
        updateUI();
        interactive->setChecked(wasChecked);
    }
    for (QAbstractSpinBox* spin : page_->findChildren<QAbstractSpinBox*>()) {
        const QString line = rangeAndDefault(spin);
        const auto describe = [&line](QWidget* w) {
            w->setToolTip(w->toolTip().isEmpty() ? line : w->toolTip() + QLatin1Char('\n') + line);
        };
        describe(spin);
        if (auto* box = qobject_cast<SliderValueBox*>(spin)) describe(box->slider());
    }
}

void QtWrapperBase::loadSlider(QSlider* slider, float word) { SliderValueBox::beside(slider)->load(word); }

bool QtWrapperBase::eventFilter(QObject* watched, QEvent* event) {
    auto* spin = qobject_cast<QAbstractSpinBox*>(watched);
    if (spin != nullptr && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            spin->interpretText();
            spin->selectAll();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

void QtWrapperBase::redraw() {
    char record[kRecordBufferSize] = {};
    t3D_->getDescription(record);
    char transformBytes[sizeof(TransformData)];
    transforms_.toBytes(transformBytes);

    QCoreApplication::processEvents();
    HostLink::send(record, transformBytes);
    QCoreApplication::processEvents();
}

void QtWrapperBase::transXChanged(int value) {
    transforms_.xOffset = kOffset.word(value);
    redraw();
}

void QtWrapperBase::transYChanged(int value) {
    transforms_.yOffset = kOffset.word(value);
    redraw();
}

void QtWrapperBase::transZChanged(int value) {
    transforms_.zOffset = kOffset.word(value);
    redraw();
}

void QtWrapperBase::rotXChanged(int value) {
    transforms_.xAngle = kAngle.word(value);
    redraw();
}

void QtWrapperBase::rotYChanged(int value) {
    transforms_.yAngle = kAngle.word(value);
    redraw();
}

void QtWrapperBase::rotZChanged(int value) {
    transforms_.zAngle = kAngle.word(value);
    redraw();
}

void QtWrapperBase::scaleChanged(double value) {
    transforms_.overallScale = static_cast<float>(value);
    redraw();
}

void QtWrapperBase::scaleXChanged(int value) {
    transforms_.xScale = kAxisScale.word(value);
    redraw();
}

void QtWrapperBase::scaleYChanged(int value) {
    transforms_.yScale = kAxisScale.word(value);
    redraw();
}

void QtWrapperBase::scaleZChanged(int value) {
    transforms_.zScale = kAxisScale.word(value);
    redraw();
}

void QtWrapperBase::interactiveUpdateToggled(bool on) {
    for (QSlider* slider : {commonUi_->transX, commonUi_->transY, commonUi_->transZ, commonUi_->rotX, commonUi_->rotY,
                            commonUi_->rotZ, commonUi_->scaleX, commonUi_->scaleY, commonUi_->scaleZ})
        slider->setTracking(on);
    commonUi_->overallScale->setKeyboardTracking(on);
}

}  // namespace gritwell
