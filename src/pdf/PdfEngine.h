#pragma once
// The file behind PdfWriter: pages painted through it (a QPainter on the writer) or painted
// elsewhere (PdfPage) go out in the order they come, each followed by nothing it needs that is
// not yet written: a font or picture object is written just before the first page that names
// it, and object numbers are given as pages are written, so the bytes depend only on the pages
// and their order.
#include "pdf/PdfPage.h"
#include "pdf/PdfStream.h"

#include <QHash>

class PdfWriter;

class PdfEngine : public PdfPageEngine {
public:
    explicit PdfEngine(QIODevice* out);

    bool begin(QPaintDevice* device) override;
    bool end() override;

    void NewPage();
    // A page painted on a PdfPage, after every page before it.
    void AddPage(const Pdf::PageContent& page);
    // The trailer, when pages came only through AddPage (a painter's end writes it otherwise).
    void Close();

    int PageCount() const { return int(m_pageObjects.size()) + (PageOpen() ? 1 : 0); }
    int PictureCount() const { return m_imageCount; }
    bool Failed() const { return m_writer.Failed(); }

    QString creator, title;
    bool compressPages = true;

private:
    void open();
    void startPage();
    void finishPage();
    int xobject(const Pdf::PageXObject& x);
    int imageStream(const QImage& image);

    Pdf::Writer m_writer;
    PdfWriter* m_device = nullptr;
    bool m_opened = false, m_closed = false;
    int m_catalog = 0, m_pages = 0, m_resources = 0, m_info = 0;
    std::vector<int> m_pageObjects;
    QHash<const Pdf::FontResource*, int> m_fonts; // written once per file
    QHash<QByteArray, int> m_xobjects;             // by name
    QByteArray m_fontEntries, m_xobjectEntries;    // "/F1a2b3c4d 5 0 R..." for the resources
    int m_imageCount = 0;
};
