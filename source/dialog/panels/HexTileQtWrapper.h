#pragma once
// HexTileQtWrapper: the "HexTile" page. Each control stores its value through
// the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/HexTileTexture3D.h"
#include "ui_HexTileWidget.h"

namespace gritwell {

class HexTileQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit HexTileQtWrapper(HexTileTexture3D* texture, ImageArea* imageArea, Ui_HexTileWidget* ui, QWidget* page,
                              QObject* parent);
    ~HexTileQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking and spin-box keyboard tracking of the HexTile controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void tileColorChanged(int value);
    void mortarColorChanged(int value);
    void tileRadiusChanged(double value);
    void mortarThicknessChanged(double value);
    void randomizeColorsToggled(bool on);
    void minColorChanged(int value);  // pushes Maximum up to stay >= Minimum
    void maxColorChanged(int value);  // pulls Minimum down to stay <= Maximum

private:
    Ui_HexTileWidget* ui_;
    HexTileTexture3D* texture_;
};

}  // namespace gritwell
