#pragma once
// PenroseRhombusQtWrapper: the "Penrose Rhombus" page. The dialog does not
// offer this generator (it has no registry line), but the page is complete:
// each control stores its value through the texture's setter and sends the
// change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/PenroseRhombusTexture3D.h"
#include "ui_PenroseRhombusWidget.h"

namespace gritwell {

class PenroseRhombusQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit PenroseRhombusQtWrapper(PenroseRhombusTexture3D* texture, ImageArea* imageArea,
                                     Ui_PenroseRhombusWidget* ui, QWidget* page, QObject* parent);
    ~PenroseRhombusQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's sliders.
    void updateUI() override;
    // Slider tracking of the Penrose Rhombus controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void skinnyColorChanged(int value);
    void fatColorChanged(int value);
    // Each Minimum pushes its Maximum up to stay above it, each Maximum
    // pulls its Minimum down.
    void skinnyRandomizeToggled(bool on);
    void skinnyMinColorChanged(int value);
    void skinnyMaxColorChanged(int value);
    void fatRandomizeToggled(bool on);
    void fatMinColorChanged(int value);
    void fatMaxColorChanged(int value);
    void edgeWidthChanged(int value);
    void edgeColorChanged(int value);

private:
    Ui_PenroseRhombusWidget* ui_;
    PenroseRhombusTexture3D* texture_;
};

}  // namespace gritwell
