#pragma once
// QtWrapperBase: what every generator's parameter panel shares. It appends
// the common transform block (translate, rotate, scale, "Interactive
// Update") under the generator's own controls, keeps the page's transform
// record in step with those controls, and after every change sends the
// generator's record and the transforms to the host.

#include <QObject>

#include "core/TransformData.h"

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
    // not blocked: a control that moves reports back, so the stored values
    // end up quantised to what the sliders can show (1/100, 1/360 of a turn),
    // and each such report reaches the host.
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
    Texture3D* t3D_;
    ImageArea* imageArea_;
    Ui_CommonWidget* commonUi_;
    TransformData transforms_;
};

}  // namespace gritwell
