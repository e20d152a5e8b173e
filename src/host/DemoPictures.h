#pragma once
// Small generated pictures for the demo data: house photos, agent portraits, office logos.
#include <QImage>

namespace DemoPictures {
QImage House(int variant);    // 320 x 240
QImage Portrait(int variant); // 96 x 120
QImage Logo(int variant);     // 160 x 80
}
