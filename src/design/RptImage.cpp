#include "design/RptImage.h"
#include "entry/SafeFile.h"

#include "entry/Host.h"
#include "entry/HostError.h"
#include "entry/Prompts.h"
#include "entry/ReportKinds.h"
#include "render/ItemLayout.h"

#include <QPainter>
#include <QFileInfo>
#include <QImageReader>
#include "render/Picture.h"

namespace {

QString gGraphicsFolder;

// Reads a picture file the way the classic loader fails: missing file, a folder, or bytes
// that are no picture; and, beyond it, a picture too large to decode. Items showing one file
// share one picture.
PictureRef LoadPictureFile(const QString& hostPath) { return PictureStore::Global().Load(LocalPath(hostPath)); }

} // namespace

RptImage::RptImage(QGraphicsItem* parent)
    : RptItemControl(parent)
{
    Resize(1440, 1440);
}

QString RptImage::GraphicsFolder()
{
    if (gHost)
        return gHost->AppPath() + QStringLiteral("Graphics\\");
    return gGraphicsFolder;
}

void RptImage::SetGraphicsFolder(const QString& folder) { gGraphicsFolder = folder; }

QString RptImage::ItemLookCaption() const { return ItemLayout::PlaceholderCaption(m_photoSeq); }

void RptImage::Layout()
{
    const QSizeF size = boundingRect().size();
    if (!m_picture)
        m_imageRect = QRectF(QPointF(0, 0), size); // an empty image covers the item
    else
        m_imageRect = ItemLayout::PictureRect(size, ItemLayout::PictureNaturalSize(m_picture), m_sizeMode,
                                              m_alignment, m_imageRect);
    m_holderRect = QRectF(QPointF(0, 0), size);
}

void RptImage::Placed()
{
    if (!m_picture)
        return;
    // An unknown size mode keeps the size in force; only the position follows the alignment.
    m_imageRect = ItemLayout::PictureRect(boundingRect().size(), ItemLayout::PictureNaturalSize(m_picture), -1,
                                          m_alignment, m_imageRect);
}

void RptImage::SetAlignment(int code)
{
    m_alignment = code;
    Placed();
    update();
    emit PropertyChanged(QStringLiteral("Alignment"));
}

void RptImage::SetPicture(const QImage& picture)
{
    SetPictureHandle(picture.isNull() ? PictureRef() : Picture::FromImage(picture));
}

void RptImage::SetPictureHandle(const PictureRef& picture)
{
    m_picture = picture;
    Layout();
    if (!picture) {
        if (m_dataBound) {
            m_holderVisible = true;
            m_imageVisible = false;
        }
    } else {
        m_imageVisible = true;
        m_holderVisible = false;
    }
    update();
    emit PropertyChanged(QStringLiteral("Picture"));
}

void RptImage::SetFileName(const QString& path)
{
    m_fileName = ItemLayout::ExpandGraphicsToken(path, GraphicsFolder());
    if (m_fileName.isEmpty()) {
        m_picture.reset();
    } else {
        try {
            m_picture = LoadPictureFile(m_fileName);
        } catch (const HostError& e) {
            // The path is kept and the item keeps the picture it had.
            MsgBox(e.Text(),
                   Mb::OKOnly);
        }
    }
    Layout();
    // A bound picture without a photo for the record still shows where the photo goes.
    m_holderVisible = !m_picture && m_dataBound;
    m_imageVisible = !m_holderVisible;
    update();
    emit PropertyChanged(QStringLiteral("FileName"));
}

void RptImage::SetSizeMode(int code)
{
    m_sizeMode = code;
    Layout();
    update();
    emit PropertyChanged(QStringLiteral("SizeMode"));
}

void RptImage::SetPhotoSeq(int v)
{
    m_photoSeq = v;
    update();
    emit PropertyChanged(QStringLiteral("PhotoSeq"));
}

void RptImage::SetCategory(int v)
{
    m_category = v;
    emit PropertyChanged(QStringLiteral("Category"));
}

void RptImage::SetDataBound(bool v)
{
    m_dataBound = v;
    if (m_picture) {
        m_holderVisible = false;
    } else {
        m_holderRect = QRectF(QPointF(1, 1), boundingRect().size());
        m_holderVisible = true;
    }
    m_imageVisible = !m_holderVisible;
    update();
    emit PropertyChanged(QStringLiteral("DataBound"));
}

void RptImage::SetEmbeded(bool v)
{
    m_embeded = v;
    emit PropertyChanged(QStringLiteral("Embeded"));
}

void RptImage::SetBackColor(uint v)
{
    m_backColor = v;
    update();
    emit PropertyChanged(QStringLiteral("BackColor"));
}

void RptImage::SetBorderColor(uint v)
{
    m_borderColor = v;
    emit PropertyChanged(QStringLiteral("BorderColor"));
}

void RptImage::SetBorderWidth(int v)
{
    m_borderWidth = v;
    emit PropertyChanged(QStringLiteral("BorderWidth"));
}

void RptImage::SetBorderStyle(int code)
{
    m_borderStyle = code == ItemCode::BorderNone ? ItemCode::BorderNone : ItemCode::BorderSolid;
    update();
    emit PropertyChanged(QStringLiteral("BorderStyle"));
}

void RptImage::SetShowOutline(bool v)
{
    m_showOutline = v;
    update();
    emit PropertyChanged(QStringLiteral("ShowOutline"));
}

void RptImage::SetSpecialEffect(int) {}

std::optional<QPointF> RptImage::MousePart(QPointF point, bool) const
{
    // The picture lies above the placeholder; the rest of the item reports nothing.
    if (m_imageVisible && m_imageRect.contains(point))
        return m_imageRect.topLeft();
    if (m_holderVisible && m_holderRect.contains(point))
        return m_holderRect.topLeft();
    return std::nullopt;
}

bool RptImage::ClickPart(QPointF point) const { return MousePart(point, false).has_value(); }

ItemLook RptImage::Look() const
{
    ItemLook l;
    l.kind = ItemKind::Picture;
    l.rect = boundingRect();
    l.picture = m_picture;
    l.sizeMode = m_sizeMode;
    l.pictureAlignment = m_alignment;
    l.pictureRect = m_imageRect;
    l.pictureVisible = m_imageVisible;
    l.placeholder = ItemLookCaption();
    l.placeholderRect = m_holderRect;
    l.placeholderVisible = m_holderVisible;
    l.borderStyle = m_borderStyle;
    l.borderColor = m_borderColor;
    l.backStyle = ItemCode::BackOpaque;
    l.backColor = m_backColor;
    l.showOutline = m_showOutline;
    return l;
}

void RptImage::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget)
{
    RptItemControl::paint(painter, option, widget);
    if (!m_holderVisible || m_borderStyle != ItemCode::BorderNone || m_showOutline)
        return;
    QPen pen(QColor(128, 128, 128), 0, Qt::DotLine);
    pen.setCosmetic(true);
    painter->save();
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    const double px = PixelTwips();
    painter->drawRect(boundingRect().adjusted(px / 2, px / 2, -px / 2, -px / 2));
    painter->restore();
}
