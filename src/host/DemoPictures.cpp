#include "host/DemoPictures.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPolygon>

namespace DemoPictures {
namespace {
QColor tone(int variant, int salt, int sat = 140, int val = 200)
{
    return QColor::fromHsv((variant * 47 + salt * 91) % 360, sat, val);
}
}

QImage House(int variant)
{
    QImage img(320, 240, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, 150);
    sky.setColorAt(0, QColor::fromHsv(200 + variant % 20, 120 + variant % 60, 235));
    sky.setColorAt(1, QColor(235, 240, 250));
    p.fillRect(0, 0, 320, 160, sky);
    QLinearGradient lawn(0, 160, 0, 240);
    lawn.setColorAt(0, QColor::fromHsv(100 + variant % 30, 150, 170));
    lawn.setColorAt(1, QColor::fromHsv(95, 170, 110));
    p.fillRect(0, 160, 320, 80, lawn);
    const int w = 150 + (variant % 5) * 12;
    const int x = 160 - w / 2 + (variant % 3 - 1) * 30;
    p.setPen(Qt::NoPen);
    p.setBrush(tone(variant, 1, 60, 230));
    p.drawRect(x, 100, w, 80);
    p.setBrush(tone(variant, 2, 120, 120));
    p.drawPolygon(QPolygon({QPoint(x - 12, 102), QPoint(x + w / 2, 40 + variant % 20), QPoint(x + w + 12, 102)}));
    p.setBrush(tone(variant, 3, 170, 110));
    p.drawRect(x + w / 2 - 12, 135, 24, 45);
    p.setBrush(QColor(200, 225, 245));
    p.drawRect(x + 14, 118, 28, 22);
    p.drawRect(x + w - 42, 118, 28, 22);
    if (variant % 2) {
        p.setBrush(QColor::fromHsv(110, 160, 90));
        p.drawEllipse(QPoint(x + w + 40, 150), 22, 34);
    }
    return img;
}

QImage Portrait(int variant)
{
    QImage img(96, 120, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient bg(0, 0, 96, 120);
    bg.setColorAt(0, tone(variant, 4, 60, 230));
    bg.setColorAt(1, tone(variant, 5, 80, 160));
    p.fillRect(img.rect(), bg);
    p.setPen(Qt::NoPen);
    p.setBrush(tone(variant, 6, 120, 90));
    p.drawEllipse(QPoint(48, 120), 42, 34);
    p.setBrush(QColor::fromHsv(25, 80 + variant % 80, 150 + variant % 90));
    p.drawEllipse(QPoint(48, 52), 22, 27);
    return img;
}

QImage Logo(int variant)
{
    QImage img(160, 80, QImage::Format_RGB32);
    img.fill(Qt::white);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(tone(variant, 7, 200, 180));
    p.drawRoundedRect(8, 8, 64, 64, 10, 10);
    p.setBrush(tone(variant, 8, 200, 120));
    p.drawRect(84, 24, 68, 10);
    p.drawRect(84, 44, 48, 10);
    return img;
}

} // namespace DemoPictures
