#include "pdf/PdfEngine.h"

#include "pdf/PdfWriter.h"

using Pdf::AppendInt;

namespace {

bool IsGray(QRgb rgb) { return qRed(rgb) == qGreen(rgb) && qGreen(rgb) == qBlue(rgb); }

void AppendEntry(QByteArray& out, const QByteArray& name, int object)
{
    out += name;
    out += ' ';
    AppendInt(out, object);
    out += " 0 R";
}

} // namespace

PdfEngine::PdfEngine(QIODevice* out)
    : m_writer(out)
{
}

void PdfEngine::open()
{
    if (m_opened)
        return;
    m_opened = true;
    m_writer.Header();
    m_catalog = m_writer.Reserve();
    m_pages = m_writer.Reserve();
    m_resources = m_writer.Reserve();
    m_info = m_writer.Reserve();
}

bool PdfEngine::begin(QPaintDevice* device)
{
    m_device = static_cast<PdfWriter*>(device);
    open();
    PdfPageEngine::begin(device);
    startPage();
    return true;
}

bool PdfEngine::end()
{
    finishPage();
    Close();
    setActive(false);
    return !m_writer.Failed();
}

void PdfEngine::Close()
{
    if (m_closed)
        return;
    open();
    m_closed = true;
    QByteArray kids = "<</Type/Pages/Kids[";
    for (size_t i = 0; i < m_pageObjects.size(); ++i) {
        if (i)
            kids += ' ';
        AppendInt(kids, m_pageObjects[i]);
        kids += " 0 R";
    }
    kids += "]/Count ";
    AppendInt(kids, qint64(m_pageObjects.size()));
    kids += ">>";
    m_writer.Object(m_pages, kids);
    m_writer.Object(m_resources, "<</ProcSet[/PDF/Text/ImageB/ImageC]/Font<<" + m_fontEntries + ">>/XObject<<" + m_xobjectEntries + ">>>>");
    QByteArray cat = "<</Type/Catalog/Pages ";
    AppendInt(cat, m_pages);
    cat += " 0 R>>";
    m_writer.Object(m_catalog, cat);
    QByteArray info = "<</Producer(Pagewright)";
    if (!creator.isEmpty()) {
        info += "/Creator";
        Pdf::AppendString(info, creator.toLatin1());
    }
    if (!title.isEmpty()) {
        info += "/Title";
        Pdf::AppendString(info, title.toLatin1());
    }
    info += ">>";
    m_writer.Object(m_info, info);
    m_writer.Finish(m_catalog, m_info);
}

void PdfEngine::NewPage()
{
    finishPage();
    startPage();
}

void PdfEngine::startPage()
{
    StartPage(m_device->pageLayout().fullRectPoints().size(), m_device->Resolution());
}

void PdfEngine::finishPage()
{
    if (PageOpen())
        AddPage(TakePage(compressPages));
}

void PdfEngine::AddPage(const Pdf::PageContent& page)
{
    open();
    for (const Pdf::FontResource* f : page.fonts) {
        if (m_fonts.contains(f))
            continue;
        const int object = m_writer.Object(f->dict);
        m_fonts.insert(f, object);
        AppendEntry(m_fontEntries, f->name, object);
    }
    for (const Pdf::PageXObject& x : page.xobjects) {
        if (m_xobjects.contains(x.name))
            continue;
        const int object = xobject(x);
        m_xobjects.insert(x.name, object);
        if (object > 0) {
            ++m_imageCount;
            AppendEntry(m_xobjectEntries, x.name, object);
        }
    }
    const int contents = page.compressed ? m_writer.Stream("/Filter/FlateDecode", page.stream) : m_writer.Stream(QByteArray(), page.stream);
    QByteArray obj = "<</Type/Page/Parent ";
    AppendInt(obj, m_pages);
    obj += " 0 R/MediaBox[0 0 ";
    Pdf::AppendNumber(obj, page.points.width(), 3);
    obj += ' ';
    Pdf::AppendNumber(obj, page.points.height(), 3);
    obj += "]/Resources ";
    AppendInt(obj, m_resources);
    obj += " 0 R/Contents ";
    AppendInt(obj, contents);
    obj += " 0 R>>";
    m_pageObjects.push_back(m_writer.Object(obj));
}

int PdfEngine::xobject(const Pdf::PageXObject& x)
{
    if (!x.picture)
        return imageStream(x.image);
    if (const auto& j = x.picture->Jpeg()) {
        // The file's own DCT stream: no decode, no loss.
        QByteArray dict = "/Type/XObject/Subtype/Image/Width ";
        AppendInt(dict, j->width);
        dict += "/Height ";
        AppendInt(dict, j->height);
        dict += j->components == 1 ? "/ColorSpace/DeviceGray" : j->components == 4 ? "/ColorSpace/DeviceCMYK" : "/ColorSpace/DeviceRGB";
        dict += "/BitsPerComponent 8/Filter/DCTDecode";
        if (j->invertedCmyk)
            dict += "/Decode[1 0 1 0 1 0 1 0]";
        return m_writer.Stream(dict, x.picture->Bytes());
    }
    return imageStream(x.picture->Image());
}

int PdfEngine::imageStream(const QImage& source)
{
    if (source.isNull())
        return 0;
    const QImage img = source.convertToFormat(QImage::Format_ARGB32);
    const int w = img.width(), h = img.height();
    bool alpha = false, gray = true;
    for (int y = 0; y < h; ++y) {
        const QRgb* line = reinterpret_cast<const QRgb*>(img.constScanLine(y));
        for (int x = 0; x < w; ++x) {
            alpha |= qAlpha(line[x]) != 255;
            gray &= IsGray(line[x]);
        }
    }
    const int channels = gray ? 1 : 3;
    QByteArray pixels(qsizetype(w) * h * channels, Qt::Uninitialized);
    QByteArray mask(alpha ? qsizetype(w) * h : 0, Qt::Uninitialized);
    char* out = pixels.data();
    char* m = mask.data();
    for (int y = 0; y < h; ++y) {
        const QRgb* line = reinterpret_cast<const QRgb*>(img.constScanLine(y));
        for (int x = 0; x < w; ++x) {
            const QRgb c = line[x];
            *out++ = char(qRed(c));
            if (!gray) {
                *out++ = char(qGreen(c));
                *out++ = char(qBlue(c));
            }
            if (alpha)
                *m++ = char(qAlpha(c));
        }
    }
    QByteArray size = "/Width ";
    AppendInt(size, w);
    size += "/Height ";
    AppendInt(size, h);
    QByteArray dict = "/Type/XObject/Subtype/Image" + size + (gray ? "/ColorSpace/DeviceGray" : "/ColorSpace/DeviceRGB") +
                      "/BitsPerComponent 8/Filter/FlateDecode";
    if (alpha) {
        const int smask = m_writer.Stream("/Type/XObject/Subtype/Image" + size + "/ColorSpace/DeviceGray/BitsPerComponent 8/Filter/FlateDecode",
                                          Pdf::Deflate(mask, 6));
        dict += "/SMask ";
        AppendInt(dict, smask);
        dict += " 0 R";
    }
    return m_writer.Stream(dict, Pdf::Deflate(pixels, 6));
}
