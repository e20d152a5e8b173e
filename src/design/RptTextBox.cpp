#include "design/RptTextBox.h"

#include "entry/Prompts.h"
#include "render/Format.h"
#include "render/ItemLayout.h"

#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

RptTextBox::RptTextBox(QGraphicsItem* parent)
    : RptItemControl(parent)
{
    SetHeight(255);
    SetWidth(1440);
    // A new element shows its own name until it is given a value.
    connect(this, &QObject::objectNameChanged, this, [this](const QString& name) {
        if (!m_valueSet) {
            if (m_markerKind)
                prepareGeometryChange();
            m_shown = name;
            update();
        }
    });
}

void RptTextBox::SetText(const QString& value)
{
    m_value = value;
    m_valueSet = true;
    ShowValue();
}

void RptTextBox::ShowValue()
{
    if (m_markerKind)
        prepareGeometryChange(); // the caption sizes the marker
    QString shown;
    try {
        shown = ItemLayout::ShownText(m_value, m_format, m_formatClass);
    } catch (const FormatError& e) {
        MsgBox(ItemLayout::FormatFailureMessage(e, m_value, m_format), Mb::OKOnly);
        shown = QStringLiteral("Error");
    }
    m_shown = shown;
    if (m_allowGrow || m_allowShrink)
        AutoHeight();
    update();
}

void RptTextBox::AutoHeight()
{
    const QRectF label = LabelRect();
    ItemLook measure = Look();
    const double needed = ItemLayout::TextHeight(measure, label.width()) + Height() - label.height();
    if (needed > m_designHeight)
        Resize(Width(), m_allowGrow ? needed : m_designHeight);
}

void RptTextBox::SetDataFormat(const QString& v)
{
    m_format = v;
    // Only a value actually given is shown again; a new element keeps its name.
    if (m_formatClass != 0 && m_valueSet)
        ShowValue();
}

void RptTextBox::SetAlignment(int code)
{
    m_alignment = code;
    const bool known = code == ItemCode::AlignLeft || code == ItemCode::AlignRight || code == ItemCode::AlignCenter;
    if (known && code != m_labelAlignment) {
        m_labelAlignment = code;
        update();
    }
}

void RptTextBox::SetBorderStyle(int code)
{
    m_borderStyle = code;
    update();
}

int RptTextBox::BorderWidth() const
{
    return int(std::nearbyint(m_borderTwips / 20.0)); // the classic rounding: halves go to even
}

void RptTextBox::SetBorderWidth(int points)
{
    m_borderTwips = points * 20;
    update();
}

void RptTextBox::SetBorderColor(uint v)
{
    m_borderColor = v;
    update();
}

void RptTextBox::SetSpecialEffect(int code)
{
    if (code == ItemCode::EffectShadow) {
        // A hairline shadow would vanish: a 1-point border becomes 3 points, drawn solid.
        if (m_borderTwips == 20)
            m_borderTwips = 60;
        m_borderStyle = ItemCode::BorderSolid;
    }
    m_effect = code;
    update();
}

void RptTextBox::SetBackColor(uint v)
{
    m_backColor = v;
    update();
}

void RptTextBox::SetForeColor(uint v)
{
    m_foreColor = v;
    update();
}

QFont RptTextBox::KindFont()
{
    QFont f(QStringLiteral("Arial"));
    f.setPointSizeF(10);
    return f;
}

QFont RptTextBox::Font() const
{
    QFont f(m_fontName);
    f.setPointSizeF(m_fontSize);
    f.setBold(m_bold);
    f.setItalic(m_italic);
    f.setUnderline(m_underline);
    f.setStrikeOut(m_strikeout);
    return f;
}

void RptTextBox::SetFont(const QFont& f)
{
    m_fontName = f.family();
    if (f.pointSizeF() > 0)
        m_fontSize = float(f.pointSizeF());
    m_bold = f.bold();
    m_italic = f.italic();
    m_underline = f.underline();
    m_strikeout = f.strikeOut();
    update();
}

void RptTextBox::SetFontName(const QString& v)
{
    m_fontName = v;
    update();
}

void RptTextBox::SetFontsize(float points)
{
    if (points > 0)
        m_fontSize = points;
    update();
}

void RptTextBox::SetFontBold(bool v)
{
    m_bold = v;
    update();
}

void RptTextBox::SetFontItalic(bool v)
{
    m_italic = v;
    update();
}

void RptTextBox::SetFontUnderline(bool v)
{
    m_underline = v;
    update();
}

void RptTextBox::SetFontStrikethru(bool v)
{
    m_strikeout = v;
    update();
}

void RptTextBox::SetBackstyle(int v)
{
    m_backStyle = v;
    update();
}

void RptTextBox::SetShowOutline(bool v)
{
    m_showOutline = v;
    update();
}

QRectF RptTextBox::LabelRect() const
{
    return ItemLayout::TextLayout(QSizeF(Width(), Height()), m_borderTwips, m_borderStyle, m_effect, PixelTwips()).label;
}

void RptTextBox::SetMarkerKind(int objectType)
{
    prepareGeometryChange();
    m_markerKind = objectType == 6 || objectType == 7 || objectType == 9 ? objectType : 0;
    update();
}

QString RptTextBox::MarkerCaption() const
{
    if (!m_shown.isEmpty())
        return m_shown;
    switch (m_markerKind) {
    case 6: return QStringLiteral("Page Break");
    case 7: return QStringLiteral("Sub Report");
    case 9: return QStringLiteral("Section Break");
    default: return QString();
    }
}

static QFont MarkerFont()
{
    QFont f(QStringLiteral("Arial"));
    f.setPixelSize(140); // 7 points, in the page's twips
    return f;
}

QRectF RptTextBox::boundingRect() const
{
    QRectF r(0, 0, Width(), Height());
    if (m_markerKind == 6 || m_markerKind == 9) {
        // Room for the whole caption, however narrow the break.
        r.setHeight(std::max(r.height(), MarkerHeight));
        r.setWidth(std::max(r.width(), QFontMetricsF(MarkerFont()).horizontalAdvance(MarkerCaption()) + 60));
    }
    return r;
}

void RptTextBox::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget)
{
    if (m_markerKind == 0) {
        RptItemControl::paint(painter, option, widget);
        return;
    }
    const double px = PixelTwips();
    QPen pen(QColor(0, 0, 160), 0, Qt::DashLine);
    pen.setCosmetic(true);
    if (m_markerKind == 7) {
        // A sub-report shows what it is like any text item, inside a dashed frame.
        RptItemControl::paint(painter, option, widget);
        painter->save();
        painter->setPen(pen);
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(QRectF(0, 0, Width(), Height()).adjusted(px / 2, px / 2, -px / 2, -px / 2));
        painter->restore();
        return;
    }
    // A break is a dashed line along its top with its caption under it, across the page.
    painter->save();
    painter->setPen(pen);
    painter->drawLine(QPointF(0, px / 2), QPointF(Width(), px / 2));
    painter->setFont(MarkerFont());
    painter->setPen(QColor(0, 0, 160));
    painter->drawText(QRectF(0, px, boundingRect().width(), MarkerHeight - px),
                      Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, MarkerCaption());
    painter->restore();
}

std::optional<QPointF> RptTextBox::MousePart(QPointF point, bool moveOnly) const
{
    // A break is grabbed anywhere on its marker.
    if ((m_markerKind == 6 || m_markerKind == 9) && boundingRect().contains(point))
        return QPointF(0, 0);
    // The label reports everything; the frame around it only plain moves.
    const QRectF label = LabelRect();
    if (label.contains(point))
        return label.topLeft();
    if (moveOnly)
        return QPointF(0, 0);
    return std::nullopt;
}

ItemLook RptTextBox::Look() const
{
    ItemLook l;
    l.kind = ItemKind::Text;
    l.rect = QRectF(0, 0, Width(), Height());
    l.text = m_shown;
    l.fontName = m_fontName;
    l.fontSize = m_fontSize;
    l.bold = m_bold;
    l.italic = m_italic;
    l.underline = m_underline;
    l.strikeout = m_strikeout;
    l.alignment = m_labelAlignment;
    l.foreColor = m_foreColor;
    l.backColor = m_backColor;
    l.backStyle = m_backStyle;
    l.borderWidth = m_borderTwips / 20.0;
    l.borderStyle = m_borderStyle;
    l.borderColor = m_borderColor;
    l.specialEffect = m_effect;
    l.showOutline = m_showOutline;
    return l;
}
