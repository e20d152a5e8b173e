#pragma once
// The text item: data fields, labels and every other text-like kind. Shows its value through
// the field's format, draws a flat border or a shadow, and can grow to fit its text.
#include "design/RptItemControl.h"

#include <QFont>

class RptTextBox : public RptItemControl {
    Q_OBJECT
    Q_PROPERTY(QString Text READ Text WRITE SetText)
    Q_PROPERTY(QString DataFormat READ DataFormat WRITE SetDataFormat)
    Q_PROPERTY(int FormatClass READ FormatClass WRITE SetFormatClass)
    Q_PROPERTY(int Alignment READ Alignment WRITE SetAlignment)
    Q_PROPERTY(int BorderStyle READ BorderStyle WRITE SetBorderStyle)
    Q_PROPERTY(int BorderWidth READ BorderWidth WRITE SetBorderWidth)
    Q_PROPERTY(uint BorderColor READ BorderColor WRITE SetBorderColor)
    Q_PROPERTY(int SpecialEffect READ SpecialEffect WRITE SetSpecialEffect)
    Q_PROPERTY(uint BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(uint ForeColor READ ForeColor WRITE SetForeColor)
    Q_PROPERTY(QFont Font READ Font WRITE SetFont)
    Q_PROPERTY(QString FontName READ FontName WRITE SetFontName)
    Q_PROPERTY(float Fontsize READ Fontsize WRITE SetFontsize)
    Q_PROPERTY(bool FontBold READ FontBold WRITE SetFontBold)
    Q_PROPERTY(bool FontItalic READ FontItalic WRITE SetFontItalic)
    Q_PROPERTY(bool FontUnderline READ FontUnderline WRITE SetFontUnderline)
    Q_PROPERTY(bool FontStrikethru READ FontStrikethru WRITE SetFontStrikethru)
    Q_PROPERTY(bool AllowGrow READ AllowGrow WRITE SetAllowGrow)
    Q_PROPERTY(bool AllowShrink READ AllowShrink WRITE SetAllowShrink)
    Q_PROPERTY(bool UseShortText READ UseShortText WRITE SetUseShortText)
    Q_PROPERTY(int FunctionType READ FunctionType WRITE SetFunctionType)
    Q_PROPERTY(int Backstyle READ Backstyle WRITE SetBackstyle)
    Q_PROPERTY(bool ShowOutline READ ShowOutline WRITE SetShowOutline)
    Q_PROPERTY(float DesignHeight READ DesignHeight WRITE SetDesignHeight)

public:
    explicit RptTextBox(QGraphicsItem* parent = nullptr);

    // The shown text (formatted); Value() is the last value set, unchanged.
    QString Text() const { return m_shown; }
    void SetText(const QString& value);
    QString Value() const { return m_value; }
    QString DataFormat() const { return m_format; }
    void SetDataFormat(const QString& v);
    int FormatClass() const { return m_formatClass; }
    void SetFormatClass(int v) { m_formatClass = v; }

    int Alignment() const { return m_alignment; }
    void SetAlignment(int code);
    int BorderStyle() const { return m_borderStyle; }
    void SetBorderStyle(int code);
    // Points; kept in twips and read back in whole points.
    int BorderWidth() const;
    void SetBorderWidth(int points);
    int BorderWidthTwips() const { return m_borderTwips; }
    uint BorderColor() const { return m_borderColor; }
    void SetBorderColor(uint v);
    int SpecialEffect() const { return m_effect; }
    void SetSpecialEffect(int code);
    uint BackColor() const { return m_backColor; }
    void SetBackColor(uint v);
    uint ForeColor() const { return m_foreColor; }
    void SetForeColor(uint v);

    QFont Font() const;
    // The font every new text item starts with.
    static QFont KindFont();
    void SetFont(const QFont& f);
    QString FontName() const { return m_fontName; }
    void SetFontName(const QString& v);
    float Fontsize() const { return m_fontSize; }
    void SetFontsize(float points);
    bool FontBold() const { return m_bold; }
    void SetFontBold(bool v);
    bool FontItalic() const { return m_italic; }
    void SetFontItalic(bool v);
    bool FontUnderline() const { return m_underline; }
    void SetFontUnderline(bool v);
    bool FontStrikethru() const { return m_strikeout; }
    void SetFontStrikethru(bool v);

    bool AllowGrow() const { return m_allowGrow; }
    void SetAllowGrow(bool v) { m_allowGrow = v; }
    bool AllowShrink() const { return m_allowShrink; }
    void SetAllowShrink(bool v) { m_allowShrink = v; }
    bool UseShortText() const { return m_useShortText; }
    void SetUseShortText(bool v) { m_useShortText = v; }
    int FunctionType() const { return m_functionType; }
    void SetFunctionType(int v) { m_functionType = v; }
    int Backstyle() const { return m_backStyle; }
    void SetBackstyle(int v);
    bool ShowOutline() const { return m_showOutline; }
    void SetShowOutline(bool v);

    // The height the item was given (by the document or the user); auto height compares
    // against it. Setting Height sets it too.
    float DesignHeight() const { return m_designHeight; }
    void SetDesignHeight(float v) { m_designHeight = v; }

    // Where the label sits now, in the control's coordinates.
    QRectF LabelRect() const;

    ItemLook Look() const override;

    // Break and sub-report items (page break 6, sub-report 7, section break 9) carry a design
    // marker: a dashed line or frame with a caption, drawn on the page whatever the view or the
    // outline setting, never printed. 0 for every other kind.
    int MarkerKind() const { return m_markerKind; }
    void SetMarkerKind(int objectType);
    // Caption of the marker: the item's text, else what the item is.
    QString MarkerCaption() const;
    // Taller than the item for a break, whose 1-twip height would leave nothing to see or click.
    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;
    static constexpr double MarkerHeight = 240; // twips

protected:
    std::optional<QPointF> MousePart(QPointF point, bool moveOnly) const override;
    void HeightGiven(double height) override { m_designHeight = float(height); }

private:
    void ShowValue();
    void AutoHeight();

    QString m_value, m_shown, m_format;
    bool m_valueSet = false;
    int m_formatClass = 0;
    int m_alignment = ItemCode::AlignLeft;
    int m_labelAlignment = ItemCode::AlignLeft;
    int m_borderStyle = ItemCode::BorderNone;
    int m_borderTwips = 1;
    uint m_borderColor = 0;
    int m_effect = ItemCode::EffectFlat;
    uint m_backColor = 0x00FFFFFF;
    uint m_foreColor = 0;
    QString m_fontName = QStringLiteral("Arial");
    float m_fontSize = 10;
    bool m_bold = false, m_italic = false, m_underline = false, m_strikeout = false;
    bool m_allowGrow = false, m_allowShrink = false, m_useShortText = false;
    int m_functionType = 0;
    int m_backStyle = ItemCode::BackTransparent;
    bool m_showOutline = false;
    float m_designHeight = 0;
    int m_markerKind = 0;
};
