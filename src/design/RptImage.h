#pragma once
// A picture item: a picture file or a bound photo, zoomed, clipped or stretched into the
// item and placed by one of five alignments. A bound picture without a photo shows the
// caption "  Picture n" instead.
#include "design/RptItemControl.h"

#include <QImage>

class RptImage : public RptItemControl {
    Q_OBJECT
    Q_PROPERTY(int Alignment READ Alignment WRITE SetAlignment)
    Q_PROPERTY(QImage Picture READ Picture WRITE SetPicture)
    Q_PROPERTY(QString FileName READ FileName WRITE SetFileName)
    Q_PROPERTY(int SizeMode READ SizeMode WRITE SetSizeMode)
    Q_PROPERTY(int PhotoSeq READ PhotoSeq WRITE SetPhotoSeq)
    Q_PROPERTY(int Category READ Category WRITE SetCategory)
    Q_PROPERTY(bool DataBound READ DataBound WRITE SetDataBound)
    Q_PROPERTY(bool Embeded READ Embeded WRITE SetEmbeded)
    Q_PROPERTY(uint BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(uint BorderColor READ BorderColor WRITE SetBorderColor)
    Q_PROPERTY(int BorderWidth READ BorderWidth WRITE SetBorderWidth)
    Q_PROPERTY(int BorderStyle READ BorderStyle WRITE SetBorderStyle)
    Q_PROPERTY(bool ShowOutline READ ShowOutline WRITE SetShowOutline)
    Q_PROPERTY(int SpecialEffect READ SpecialEffect WRITE SetSpecialEffect)

public:
    explicit RptImage(QGraphicsItem* parent = nullptr);

    int Alignment() const { return m_alignment; }
    void SetAlignment(int code);
    // The picture as pixels (decoded on demand); a null image is "nothing".
    QImage Picture() const { return m_picture ? m_picture->Image() : QImage(); }
    void SetPicture(const QImage& picture);
    // The shared picture itself, as the store hands it out.
    PictureRef PictureHandle() const { return m_picture; }
    void SetPictureHandle(const PictureRef& picture);
    // The stored path; a leading "~Graphics~" has been expanded.
    QString FileName() const { return m_fileName; }
    void SetFileName(const QString& path);
    int SizeMode() const { return m_sizeMode; }
    void SetSizeMode(int code);
    int PhotoSeq() const { return m_photoSeq; }
    void SetPhotoSeq(int v);
    int Category() const { return m_category; }
    void SetCategory(int v);
    bool DataBound() const { return m_dataBound; }
    void SetDataBound(bool v);
    bool Embeded() const { return m_embeded; }
    void SetEmbeded(bool v);
    uint BackColor() const { return m_backColor; }
    void SetBackColor(uint v);
    uint BorderColor() const { return m_borderColor; }
    void SetBorderColor(uint v);
    int BorderWidth() const { return m_borderWidth; }
    void SetBorderWidth(int v);
    int BorderStyle() const { return m_borderStyle; }
    void SetBorderStyle(int code);
    bool ShowOutline() const { return m_showOutline; }
    void SetShowOutline(bool v);
    int SpecialEffect() const { return 0; } // accepted and ignored
    void SetSpecialEffect(int);

    // What "~Graphics~" stands for: the host's application folder + "Graphics\"; without a
    // host, the folder set here.
    static QString GraphicsFolder();
    static void SetGraphicsFolder(const QString& folder);

    // Where the picture and the placeholder sit, and which of them show.
    QRectF ImageRect() const { return m_imageRect; }
    bool ImageVisible() const { return m_imageVisible; }
    QRectF HolderRect() const { return m_holderRect; }
    bool HolderVisible() const { return m_holderVisible; }
    QString HolderText() const { return ItemLookCaption(); }

    ItemLook Look() const override;
    // As printed, plus a dotted outline round a frameless placeholder: on the page the user must
    // see where the photo will go.
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    void Layout() override;
    std::optional<QPointF> MousePart(QPointF point, bool moveOnly) const override;
    bool ClickPart(QPointF point) const override;

private:
    QString ItemLookCaption() const;
    void Placed(); // the alignment only

    int m_alignment = ItemCode::PicTopLeft;
    PictureRef m_picture;
    QString m_fileName;
    int m_sizeMode = ItemCode::SizeZoom;
    int m_photoSeq = 1;
    int m_category = 0;
    bool m_dataBound = false;
    bool m_embeded = false;
    uint m_backColor = 0x00FFFFFF;
    uint m_borderColor = 0;
    int m_borderWidth = 1;
    int m_borderStyle = ItemCode::BorderNone;
    bool m_showOutline = false;

    QRectF m_imageRect;
    QRectF m_holderRect;
    bool m_imageVisible = true;
    bool m_holderVisible = true;
};
