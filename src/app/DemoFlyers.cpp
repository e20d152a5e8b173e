#include "app/DemoFlyers.h"

#include "design/OffscreenPage.h"
#include "document/clsRptControl.h"
#include "entry/ReportKinds.h"
#include "host/EmbeddedHost.h"
#include "render/ItemLook.h"

#include <QDir>
#include <QFileInfo>

namespace {

// Listing field catalogue ids.
constexpr int kListNum = 1, kListPrice = 2, kCity = 12, kFullAddress = 16;
constexpr float kWidth = 10800; // a letter page inside the default margins

struct FlyerStyle {
    QString headline;
    QString tagLine;
    quint32 accent; // BGR
};

class FlyerMaker {
public:
    explicit FlyerMaker(FieldDictionary* dic)
    {
        m_doc.Init(dic, &m_page, nullptr);
        m_doc.SetSelectionManager(&m_page);
    }
    ~FlyerMaker() { m_doc.UnloadReport(); }

    bool make(const QString& file, const FlyerStyle& s, const QString& logo)
    {
        m_doc.UnloadReport();
        QObject* head = add(ObjType::Label, QStringLiteral("Unbound"), 0, 200, 0, kWidth, 800);
        set(head, "Text", s.headline);
        set(head, "Fontsize", 32.f);
        set(head, "FontBold", true);
        set(head, "ForeColor", s.accent);
        set(head, "Alignment", ItemCode::AlignCenter);

        QObject* frame = add(ObjType::Box, {}, 0, 1100, 600, 9600, 6400);
        set(frame, "BorderStyle", ItemCode::BorderSolid);
        set(frame, "BorderWidth", 2.f);
        set(frame, "BorderColor", s.accent);
        QObject* photo = add(ObjType::Image, {}, 0, 1200, 700, 9400, 6200);
        set(photo, "DataBound", true);
        set(photo, "PhotoSeq", 1);
        set(photo, "SizeMode", ItemCode::SizeZoom);
        set(photo, "Alignment", ItemCode::PicCenter);

        QObject* offered = add(ObjType::Label, QStringLiteral("Unbound"), 0, 7800, 600, 2400, 500);
        set(offered, "Text", QStringLiteral("Offered at"));
        set(offered, "Fontsize", 16.f);
        QObject* price = add(ObjType::Field, QStringLiteral("ListPrice"), kListPrice, 7750, 3000, 5000, 560);
        set(price, "Fontsize", 20.f);
        set(price, "FontBold", true);
        QObject* address = add(ObjType::Field, QStringLiteral("FullAddress"), kFullAddress, 8500, 600, 9600, 480);
        set(address, "Fontsize", 16.f);
        QObject* city = add(ObjType::Field, QStringLiteral("City"), kCity, 9000, 600, 9600, 420);
        set(city, "Fontsize", 14.f);
        QObject* numberLabel = add(ObjType::Label, QStringLiteral("Unbound"), 0, 9600, 600, 1600, 360);
        set(numberLabel, "Text", QStringLiteral("Listing #"));
        set(numberLabel, "Fontsize", 11.f);
        QObject* number = add(ObjType::Field, QStringLiteral("ListNum"), kListNum, 9600, 2200, 2400, 360);
        set(number, "Fontsize", 11.f);

        QObject* tag = add(ObjType::Label, QStringLiteral("Unbound"), 0, 10500, 0, kWidth, 600);
        set(tag, "Text", s.tagLine);
        set(tag, "Fontsize", 18.f);
        set(tag, "FontItalic", true);
        set(tag, "Alignment", ItemCode::AlignCenter);
        QObject* rule = add(ObjType::Line, {}, 0, 11300, 600, 9600, 0);
        set(rule, "BorderColor", s.accent);
        if (!logo.isEmpty()) {
            QObject* pic = add(ObjType::Image, {}, 0, 11600, 600, 2400, 1200);
            set(pic, "FileName", logo);
            set(pic, "SizeMode", ItemCode::SizeZoom);
        }
        add(ObjType::DateTime, {}, 0, 12400, 6600, 3600, 300);
        return m_doc.SaveReport(file, false);
    }

private:
    QObject* add(int kind, const QString& name, int dicId, float top, float left, float width, float height)
    {
        m_doc.AddNew(kind, name, dicId);
        QObject* c = m_doc.Item(m_doc.RptItemCount()).control;
        set(c, "Top", top);
        set(c, "Left", left);
        set(c, "Width", width);
        if (height > 0)
            set(c, "Height", height);
        return c;
    }
    static void set(QObject* c, const char* name, const QVariant& v) { clsRptControl::SetProp(c, name, v); }

    OffscreenPage m_page;
    clsRptControl m_doc;
};

// Restores the host the caller had.
struct HostScope {
    TervaneCommon* saved = gHost;
    explicit HostScope(TervaneCommon* h) { gHost = h; }
    ~HostScope() { gHost = saved; }
    HostScope(const HostScope&) = delete;
    HostScope& operator=(const HostScope&) = delete;
};

} // namespace

QStringList WriteDemoFlyers(const QString& dir)
{
    std::unique_ptr<EmbeddedHost> host = EmbeddedHost::Open(dir);
    const HostScope scope(host.get());
    // The folders as the flyer manager names them; LocalPath finds "Users" for "users".
    const QString root = host->AppPath() + QStringLiteral("users\\~UserName~\\Reports\\Flyers\\");
    const QString templates = LocalPath(ExpandUserName(root, QStringLiteral("Templates")));
    const QString own = LocalPath(ExpandUserName(root, host->UserName()));
    QString logo;
    for (const char* ext : {"jpg", "bmp"})
        if (QFileInfo::exists(LocalPath(host->AppPath() + QStringLiteral("Graphics\\") + host->OfficeId() + QLatin1Char('.') +
                                        QLatin1String(ext))))
            logo = QStringLiteral("~Graphics~") + host->OfficeId() + QLatin1Char('.') + QLatin1String(ext);

    const struct {
        QString folder, name;
        FlyerStyle style;
    } flyers[] = {
        {templates, QStringLiteral("Open House"), {QStringLiteral("OPEN HOUSE"), QStringLiteral("Join us this Sunday, 1 to 4 pm"), 0x8B4513}},
        {templates, QStringLiteral("Just Listed"), {QStringLiteral("JUST LISTED"), QStringLiteral("Call today for a private showing!"), 0x2020B0}},
        {own, QStringLiteral("Featured Home"), {QStringLiteral("Featured Home"), QStringLiteral("Ask me about this home"), 0x206020}},
    };
    std::unique_ptr<FieldDictionary> dic = host->NewFieldDictionary(1);
    FlyerMaker maker(dic.get());
    QStringList written;
    for (const auto& f : flyers) {
        const QString file = QDir(f.folder).filePath(f.name + QStringLiteral(".rdf"));
        if (QFileInfo::exists(file) || !QDir().mkpath(f.folder))
            continue;
        if (maker.make(file, f.style, logo))
            written << file;
    }
    return written;
}
