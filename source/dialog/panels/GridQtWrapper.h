#pragma once
// GridQtWrapper: the "Grid" page. The line width and the cell tones go to the
// texture's setters and then to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/GridTexture3D.h"
#include "ui_GridWidget.h"

namespace gritwell {

class GridQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit GridQtWrapper(GridTexture3D* texture, ImageArea* imageArea, Ui_GridWidget* ui, QWidget* page,
                           QObject* parent);
    ~GridQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking of the three Grid sliders.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void gridWidthChanged(int value);  // the line width, 0..1 on 0..100
    void randomizeColorsToggled(bool on);
    void minColorChanged(int value);  // pushes Maximum up to stay >= Minimum
    void maxColorChanged(int value);  // pulls Minimum down to stay <= Maximum

private:
    Ui_GridWidget* ui_;
    GridTexture3D* texture_;
};

}  // namespace gritwell
