#pragma once
// A demo data folder (made once per test program), a listing report built and saved by the
// document itself, and the texts its data view shows, for comparing printed pages against.
#include "design/OffscreenPage.h"
#include "document/clsRptControl.h"
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"
#include "PgTest.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

inline QString DemoFolder()
{
    static QTemporaryDir dir;
    static bool made = false;
    if (!made) {
        GenerateDemoData(dir.path(), 40);
        UseTestServerFor(dir.path());
        made = true;
    }
    return dir.path();
}

struct ReportFixture {
    std::unique_ptr<EmbeddedHost> host;
    std::unique_ptr<FieldDictionary> dic;
    OffscreenPage page;
    clsRptControl doc;

    ReportFixture()
        : host(EmbeddedHost::Open(DemoFolder()))
    {
        gHost = host.get();
        dic = host->NewFieldDictionary(1);
        doc.Init(dic.get(), &page, nullptr);
        doc.SetSelectionManager(&page);
    }
    ~ReportFixture()
    {
        doc.UnloadReport();
        gHost = nullptr;
    }
    QObject* add(int kind, const QString& name, int dicId, float top, float left, const QString& text = {})
    {
        doc.AddNew(kind, name, dicId);
        QObject* c = doc.Item(doc.RptItemCount()).control;
        clsRptControl::SetProp(c, "Top", top);
        clsRptControl::SetProp(c, "Left", left);
        clsRptControl::SetProp(c, "Width", 2600.f);
        if (!text.isEmpty())
            clsRptControl::SetProp(c, "Text", text);
        return c;
    }
    // Header "Listing Sheet", detail ListNum, City, PropType (coded), ListPrice (currency),
    // FullAddress (an expression), footer "Call the office". Page header bar at 940, footer bar at 3220.
    void buildListingReport(const QString& file, int headerFlags)
    {
        page.SetHeaderFooter(940);
        page.MovePageFooterBar(3220);
        add(ObjType::Label, "", 0, 100, 0, "Listing Sheet");
        add(ObjType::Field, "ListNum", 1, 1000, 0);
        add(ObjType::Field, "City", 12, 1000, 3000);
        add(ObjType::Field, "PropType", 4, 1400, 0);
        add(ObjType::Field, "ListPrice", 2, 1400, 3000);
        add(ObjType::Field, "FullAddress", 16, 1800, 0);
        add(ObjType::Label, "", 0, 3300, 0, "Call the office");
        doc.HeaderFlags = headerFlags;
        QVERIFY(doc.SaveReport(file, false));
    }
    // What the data view shows in each field item for key (after loading file).
    QStringList dataViewTexts(const QString& file, const QString& key)
    {
        doc.LoadReport(file);
        doc.DataView = true;
        if (!doc.RefreshData(key))
            return {};
        QStringList out;
        for (int i = 1; i <= doc.RptItemCount(); ++i)
            if (doc.Item(i).ObjectType == ObjType::Field)
                out << clsRptControl::Prop(doc.Item(i).control, "Text").toString();
        return out;
    }
    // Listing keys that the data view finds (the status filter hides some listings).
    QStringList liveKeys(const QString& file, int count)
    {
        QStringList keys;
        for (qlonglong k = DemoIdentity::FirstListNum; keys.size() < count && k < DemoIdentity::FirstListNum + 40; ++k)
            if (!dataViewTexts(file, QString::number(k)).isEmpty())
                keys << QString::number(k);
        return keys;
    }

    // The first `count` listings the demo user may see (his status filter applied), in key order.
    QStringList visibleListings(int count)
    {
        QStringList keys;
        const std::unique_ptr<Recordset> rs = host->Database().OpenRecordset(
            1, "SELECT ListNum FROM Listings WHERE CLng(LstStatus) NOT IN (" + host->StatusList() + ") ORDER BY ListNum;", 3, 1, 1);
        for (; !rs->Eof() && keys.size() < count; rs->MoveNext())
            keys << rs->Fields(0).toString();
        return keys;
    }
};

// The text of every page of a PDF (pdftotext separates pages with form feeds).
inline QStringList PdfPages(const QString& pdf)
{
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    if (!p.waitForFinished(60000) || p.exitCode() != 0)
        return {QStringLiteral("pdftotext failed")};
    QStringList pages = QString::fromUtf8(p.readAllStandardOutput()).split(QLatin1Char('\f'));
    if (!pages.isEmpty() && pages.last().trimmed().isEmpty())
        pages.removeLast();
    return pages;
}

inline bool HavePdfToText() { return !QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty(); }
