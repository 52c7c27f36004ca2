#pragma once
// QtWrapperBase: what every generator's parameter panel shares. It appends
// the common transform block (translate, rotate, scale, "Interactive
// Update") under the generator's own controls, keeps the page's transform
// record in step with those controls, and after every change sends the
// generator's record and the transforms to the host. It also gives every
// slider of the page its value box (SliderValueBox), every slider and spin
// box a tool tip with its range and default, and keeps Return in a spin box
// from closing the dialog.

#include <initializer_list>

#include <QObject>
#include <QString>

#include "core/TransformData.h"
#include "dialog/SliderScale.h"

class QSlider;
class QWidget;
class Ui_CommonWidget;

namespace gritwell {

class ImageArea;
class Texture3D;

class QtWrapperBase : public QObject {
    Q_OBJECT

public:
    // `page` already holds the generator's form; the common block goes under it.
    explicit QtWrapperBase(Texture3D* texture, ImageArea* imageArea, QWidget* page, QObject* parent);
    ~QtWrapperBase() override;
    QtWrapperBase(const QtWrapperBase&) = delete;
    QtWrapperBase& operator=(const QtWrapperBase&) = delete;

    // Loads every control of the page from the texture's current fields.
    virtual void updateUI() = 0;

    // Stores all eleven words, then moves the controls to them. Signals are
    // not blocked: a control that moves reports back, and each such report
    // reaches the host. A word a slider stored comes back unchanged (see
    // SliderScale::position); any other is quantised to what the sliders can
    // show (1/100, 1/360 of a turn).
    void setTransforms(const TransformData& t);
    void getTransforms(TransformData& out) const;

    // Sends the texture's record and the transforms to the host's callback
    // through HostLink: (bits of 4.0f, 8, 0, 0, record, transforms), with
    // pending GUI events processed before and after. Nothing is sent while
    // the host has given no callback.
    void redraw();

public slots:
    void transXChanged(int value);
    void transYChanged(int value);
    void transZChanged(int value);
    void rotXChanged(int value);
    void rotYChanged(int value);
    void rotZChanged(int value);
    void scaleChanged(double value);
    void scaleXChanged(int value);
    void scaleYChanged(int value);
    void scaleZChanged(int value);
    // Slider tracking and spin-box keyboard tracking of the common block.
    void interactiveUpdateToggled(bool on);

protected:
    // For the panels' constructors: a value box beside each slider, showing
    // its value on `scale` (with `suffix`, such as a degree sign).
    void addValueBoxes(const SliderScale& scale, std::initializer_list<QSlider*> sliders,
                       const QString& suffix = QString());
    // For the end of the panels' constructors, while the texture is still at
    // its generator's defaults: appends to the tool tip of every slider and
    // spin box of the page its range and the value it shows at the defaults.
    void describeControls();
    // For updateUI(): shows a stored float on a slider and its value box,
    // neither reporting it.
    static void loadSlider(QSlider* slider, float word);

    // Return in a spin box takes the typed value and stops there; passed on,
    // it would press the dialog's default button and close the dialog.
    bool eventFilter(QObject* watched, QEvent* event) override;

    Texture3D* t3D_;
    ImageArea* imageArea_;
    Ui_CommonWidget* commonUi_;
    TransformData transforms_;
    QWidget* page_;
};

}  // namespace gritwell
