#pragma once
// VoronoiTileQtWrapper: the "Voronoi Tiles" page: the tiles' layout and
// tones, the grout, and the fractal noise on each. Each control stores its
// value through the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/VoronoiTileTexture3D.h"
#include "ui_VoronoiTileWidget.h"

namespace gritwell {

class VoronoiTileQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit VoronoiTileQtWrapper(VoronoiTileTexture3D* texture, ImageArea* imageArea, Ui_VoronoiTileWidget* ui,
                                  QWidget* page, QObject* parent);
    ~VoronoiTileQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking and spin-box keyboard tracking of the Voronoi Tiles controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void cellVariabilityChanged(double value);
    void cellRandomizeColorsToggled(bool on);
    void cellMinColorChanged(int value);  // pushes Maximum up to stay >= Minimum
    void cellMaxColorChanged(int value);  // pulls Minimum down to stay <= Maximum
    void cellAddNoiseToggled(bool on);
    void cellOctavesChanged(int value);
    void cellLacunarityChanged(double value);
    void cellGainChanged(double value);
    void cellDetailChanged(double value);
    void boundaryThicknessChanged(double value);
    void boundaryAddNoiseToggled(bool on);
    void boundaryOctavesChanged(int value);
    void boundaryLacunarityChanged(double value);
    void boundaryGainChanged(double value);
    void boundaryDetailChanged(double value);

private:
    Ui_VoronoiTileWidget* ui_;
    VoronoiTileTexture3D* texture_;
};

}  // namespace gritwell
