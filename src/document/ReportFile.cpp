// Saving, loading and pasting: converting between item controls and file records.
#include "document/clsRptControl.h"
#include "document/RdfFile.h"
#include "document/RdfSections.h"
#include "document/RecordQuery.h"

#include "entry/Host.h"
#include "entry/Prompts.h"
#include "entry/SafeFile.h"

#include <QFile>
#include <QDateTime>
#include <QFileInfo>
#include <cmath>

// An embedded picture block holds at most this; larger files cannot be saved in a report.
static constexpr qint64 kMaxPictureBytes = qint64(256) << 20;

namespace {
constexpr float BarHeight = 220;

// The picture list of one save or copy: each file is stored once; its position is the
// decimal text the record keeps.
struct PictureList {
    QStringList files;
    QString add(const QString& file)
    {
        int i = files.indexOf(file);
        if (i < 0) {
            files << file;
            i = int(files.size()) - 1;
        }
        return QString::number(i);
    }
};

bool toBool(const QVariant& v) { return v.toBool(); }
} // namespace

// Conversion helpers with access to the document's records.
class RptFileConverter {
public:
    static RdfItem toRecord(const clsRptControl& doc, const ItemRecord& rec, bool staticSave, PictureList& pictures, bool& function6)
    {
        using P = clsRptControl;
        const QObject* c = rec.control;
        RdfItem r;
        r.kind = quint8(rec.ObjectType);
        r.name = rec.Name;
        r.left = P::Prop(c, "Left").toFloat();
        r.top = P::Prop(c, "Top").toFloat();
        r.width = qint32(std::lround(P::Prop(c, "Width").toDouble()));
        r.height = qint32(std::lround(P::Prop(c, "Height").toDouble()));
        r.borderStyle = quint8(P::Prop(c, "BorderStyle").toInt());
        r.borderWidth = qint16(std::lround(P::Prop(c, "BorderWidth").toDouble() * 20));
        r.borderColor = P::Prop(c, "BorderColor").toUInt();

        const int kind = rec.ObjectType;
        if (P::IsTextKind(kind)) {
            r.fontName = P::Prop(c, "FontName").toString();
            r.fontSize = P::Prop(c, "Fontsize").toFloat();
            if (toBool(P::Prop(c, "FontBold"))) r.flags |= RdfFlag::Bold;
            if (toBool(P::Prop(c, "FontItalic"))) r.flags |= RdfFlag::Italic;
            if (toBool(P::Prop(c, "FontUnderline"))) r.flags |= RdfFlag::Underline;
            if (toBool(P::Prop(c, "AllowGrow"))) r.flags |= RdfFlag::AllowGrow;
            if (toBool(P::Prop(c, "AllowShrink"))) r.flags |= RdfFlag::AllowShrink;
            r.foreColor = P::Prop(c, "ForeColor").toUInt();
            r.backColor = P::Prop(c, "BackColor").toUInt();
            r.specialEffect = quint8(P::Prop(c, "SpecialEffect").toInt());
            r.alignment = quint8(P::Prop(c, "Alignment").toInt());
            if (P::Prop(c, "Backstyle").toInt() == 1) r.flags |= RdfFlag::Opaque;
        }
        switch (kind) {
        case ObjType::NewPage: case ObjType::SubReport: case ObjType::Section:
            r.text = P::Prop(c, "Text").toString();
            r.formatOrFile = P::Prop(c, "DataFormat").toString();
            r.dataField = rec.DataField;
            r.flags |= RdfFlag::NewBand;
            break;
        case ObjType::Box:
            if (P::Prop(c, "Backstyle").toInt() == 1) r.flags |= RdfFlag::Opaque;
            r.backColor = P::Prop(c, "BackColor").toUInt();
            break;
        case ObjType::Image: {
            r.backColor = P::Prop(c, "BackColor").toUInt();
            r.specialEffect = quint8(P::Prop(c, "SpecialEffect").toInt());
            r.alignment = quint8(P::Prop(c, "Alignment").toInt());
            r.sizeMode = qint16(P::Prop(c, "SizeMode").toInt());
            r.dataBound = toBool(P::Prop(c, "DataBound"));
            const bool embedded = toBool(P::Prop(c, "Embeded"));
            const QString file = P::Prop(c, "FileName").toString();
            if (embedded)
                r.flags |= RdfFlag::Embedded;
            if (r.dataBound) {
                r.numberA = qint16(P::Prop(c, "PhotoSeq").toInt());
                r.numberB = qint16(P::Prop(c, "Category").toInt());
                if (!doc.AutoFillId.isEmpty() && !file.isEmpty())
                    r.formatOrFile = pictures.add(file);
            } else if (embedded && !file.isEmpty()) {
                r.formatOrFile = pictures.add(file);
            } else {
                r.formatOrFile = graphicsToken(doc, file);
            }
            break;
        }
        case ObjType::Label: case ObjType::DateTime:
            // A label keeps what it shows; a date-time item its last stamp (it shows its name
            // in the template view).
            r.text = kind == ObjType::Label ? P::Prop(c, "Text").toString() : rec.Text;
            r.formatOrFile = P::Prop(c, "DataFormat").toString();
            break;
        case ObjType::Field: {
            r.dicId = qint16(rec.DicId);
            r.codeType = qint16(rec.CodeType);
            r.dataField = rec.DataField;
            r.text = rec.Text;
            r.formatOrFile = P::Prop(c, "DataFormat").toString();
            r.numberA = qint16(P::Prop(c, "FormatClass").toInt());
            if (rec.HasExpression()) r.flags |= RdfFlag::Expression;
            if (toBool(P::Prop(c, "UseShortText"))) r.flags |= RdfFlag::ShortText;
            if (staticSave) {
                r.kind = RdfKind::Label;
                r.text = P::Prop(c, "Text").toString(); // frozen as shown
            }
            const int fn = P::Prop(c, "FunctionType").toInt();
            if (r.kind == RdfKind::Field && fn != 0) {
                r.kind = RdfKind::FunctionField;
                r.numberB = qint16(fn);
                if (fn == 6)
                    function6 = true;
            }
            if (r.height >= 2 * r.fontSize * 20)
                r.flags |= RdfFlag::MultiLine;
            break;
        }
        default:
            break;
        }
        return r;
    }

    static QString graphicsToken(const clsRptControl& doc, const QString& file)
    {
        const QString g = doc.GraphicsFolder();
        if (!g.isEmpty() && file.toUpper().startsWith(g))
            return QStringLiteral("~Graphics~") + file.mid(g.size());
        // Local paths of the graphics folder are stored the same way, so files move between machines.
        if (gHost) {
            const QString local = LocalPathOfGraphics();
            if (!local.isEmpty() && file.startsWith(local))
                return QStringLiteral("~Graphics~") + QString(file.mid(local.size())).replace(QLatin1Char('/'), QLatin1Char('\\'));
        }
        return file;
    }

    static QString LocalPathOfGraphics();
};

#include "entry/ReportKinds.h"
QString RptFileConverter::LocalPathOfGraphics()
{
    QString p = LocalPath(gHost->AppPath() + QStringLiteral("Graphics\\"));
    if (!p.endsWith(QLatin1Char('/')))
        p += QLatin1Char('/');
    return p;
}

// ---------------------------------------------------------------- stored field lists

namespace {

bool containsCi(const QString& list, const QString& name)
{
    return list.contains(QLatin1Char(',') + name + QLatin1Char(','), Qt::CaseInsensitive);
}

} // namespace

static QString buildFieldList(FieldDictionary* dic, int flag, int first, int last, const std::vector<RdfItem>& recs, bool* missingSql)
{
    QString list = QStringLiteral(",");
    if (flag == 0 && dic)
        list += dic->KeyField() + QLatin1Char(',');
    for (int i = first; i <= last && i <= int(recs.size()); ++i) {
        if (i < 1)
            continue;
        const RdfItem& r = recs[size_t(i - 1)];
        if (r.kind == RdfKind::Field || r.kind == RdfKind::FunctionField) {
            const QString name = r.dataField;
            if (!containsCi(list, name)) {
                if ((r.flags & RdfFlag::Expression) && (flag == 0 || name.endsWith(QLatin1String("Expr"))) && dic) {
                    dic->SelectField(r.dicId);
                    list += dic->FieldExpression() + QStringLiteral(" AS ") + name + QLatin1Char(',');
                } else {
                    list += name + QLatin1Char(',');
                }
            }
            if ((r.flags & RdfFlag::ShortText) && !r.formatOrFile.isEmpty() && (r.codeType == 1 || r.codeType == 2) &&
                !containsCi(list, r.formatOrFile))
                list += r.formatOrFile + QLatin1Char(',');
        } else if (r.kind == RdfKind::Image && r.dataBound) {
            if (r.numberB == 0) {
                if (!list.contains(QLatin1String(",PhotoVersion,")))
                    list += QStringLiteral("PhotoVersion,");
                for (const char* col : {"PhotoCount", "ListNum"})
                    if (!containsCi(list, QLatin1String(col)))
                        list += QLatin1String(col) + QLatin1Char(',');
            } else if (r.numberB == 1 || r.numberB == 2) {
                const QString col = r.numberB == 1 ? QStringLiteral("ListAgentName") : QStringLiteral("SaleAgentName");
                if (!containsCi(list, col) && dic) {
                    dic->SelectFieldByName(col);
                    list += dic->FieldExpression() + QStringLiteral(" AS ") + col + QLatin1Char(',');
                }
            }
        } else if (r.kind == RdfKind::SubReport) {
            const QString sql = r.dataField;
            if (sql.isEmpty()) {
                MsgBox(QStringLiteral("Warning - No SQL Text in Subreport ") + r.name, Mb::OKOnly, QStringLiteral("Save Report"));
                if (missingSql)
                    *missingSql = true;
                continue;
            }
            // Parameters are column names between two "%"; an unpaired last "%" ends the scan.
            qsizetype pos = 0;
            while (true) {
                const qsizetype a = sql.indexOf(QLatin1Char('%'), pos);
                if (a < 0)
                    break;
                const qsizetype b = sql.indexOf(QLatin1Char('%'), a + 1);
                if (b < 0)
                    break;
                const QString param = sql.mid(a + 1, b - a - 1);
                if (!containsCi(list, param))
                    list += param + QLatin1Char(',');
                pos = b + 1;
            }
        }
    }
    return list.size() >= 2 ? list.mid(1, list.size() - 2) : QString();
}

// ---------------------------------------------------------------- saving

bool clsRptControl::SaveReport(const QString& FileName, bool pStaticReport)
{
    if (RptItemCount() == 0)
        return true;
    const BusyPointer busy(m_win);
    m_function6 = false;
    m_staticSave = pStaticReport;
    struct StaticFlag {
        bool& flag;
        ~StaticFlag() { flag = false; }
    } staticFlag{m_staticSave};

    try {
        PictureList pictures;
        RdfReport rep;
        std::vector<int> zorders;
        rep.items.reserve(m_items.size());
        zorders.reserve(m_items.size());
        for (const ItemRecord& rec : m_items) {
            rep.items.push_back(RptFileConverter::toRecord(*this, rec, pStaticReport, pictures, m_function6));
            zorders.push_back(rec.ZOrder);
        }
        RdfHeader& h = rep.header;
        h.version = 100;
        h.headerFlags = pStaticReport ? (HeaderFlags | 2) : HeaderFlags;
        h.topMargin = qint16(TopMargin);
        h.bottomMargin = qint16(BottomMargin);
        h.leftMargin = qint16(LeftMargin);
        h.rightMargin = qint16(RightMargin);
        h.numberOfColumns = quint8(NumberOfColumns);
        h.sectionSpacingTwips = qint16(std::lround(double(m_sectionSpacing) * 1440));
        h.dictionaryVersion = m_dic ? m_dic->Version() : 0;
        h.reportOption = qint16(ReportOption);
        h.autoFillId = AutoFillId;
        RdfWritePaper(h, Paper);

        const float detailBar = m_win ? m_win->DetailHeaderBarOffset() : 0;
        const float footerBar = m_win ? m_win->PageFooterBarOffset() : 0;
        RdfOrderSections(rep.items, zorders, h, detailBar, footerBar, detailBar > 0, footerBar > 0);
        h.detailSize += h.sectionSpacingTwips;

        if (!pStaticReport) {
            bool missingSql = false;
            const int n = int(rep.items.size());
            h.headerFieldList = buildFieldList(m_dic, FieldListFlag, 1, h.firstDetailItem - 1, rep.items, &missingSql);
            if (!m_function6)
                h.detailFieldList = buildFieldList(m_dic, FieldListFlag, h.firstDetailItem, h.lastDetailItem, rep.items, &missingSql);
            h.footerFieldList = buildFieldList(m_dic, FieldListFlag, h.lastDetailItem + 1, n, rep.items, &missingSql);
            if (missingSql)
                return false;
        }
        if (ClearDataSource)
            for (RdfItem& r : rep.items)
                if (r.kind == RdfKind::Field || r.kind == RdfKind::FunctionField)
                    r.dicId = 0;

        // Regular files only, read to their known size: a FIFO or device named as a picture
        // must not hang the save.
        for (const QString& f : std::as_const(pictures.files))
            rep.pictures.push_back(ReadRegularFile(f, kMaxPictureBytes));
        h.pictureCount = qint32(rep.pictures.size());
        RdfSaveFile(FileName, rep);
    } catch (const HostError& e) {
        MsgBox(e.Text(),
               Mb::OKOnly | Mb::Critical, QStringLiteral("Save Report Error"));
        return false;
    }
    // Cleared only once the file is safely written, so a failed save still counts as unsaved.
    DirtyFlag = false;
    m_fileName = FileName;
    return true;
}

namespace {
// Answers for a save nobody asked for: no dialog may interrupt the user's work.
class SilentPrompter : public Prompter {
public:
    int MsgBox(const QString&, int buttons, const QString&) override { return (buttons & 7) == Mb::YesNo ? Mb::No : Mb::OK; }
    QString ChooseOpenFile(const QString&, const QString&, const QString&) override { return {}; }
    QString ChooseSaveFile(const QString&, const QString&, const QString&) override { return {}; }
    std::optional<quint32> ChooseColor(quint32) override { return std::nullopt; }
};
} // namespace

bool clsRptControl::WriteRecoveryCopy(const QString& path)
{
    const bool dirty = DirtyFlag;
    const QString name = m_fileName;
    SilentPrompter silent;
    Prompter& previous = Prompts();
    SetPrompter(&silent);
    struct Restore {
        Prompter& p;
        ~Restore() { SetPrompter(&p); }
    } restore{previous};
    bool ok = false;
    try {
        ok = SaveReport(path, false);
    } catch (...) {
        ok = false;
    }
    DirtyFlag = dirty;
    m_fileName = name;
    return ok;
}

// ---------------------------------------------------------------- loading and the item builder

RdfItem clsRptControl::recordOf(const ItemRecord& rec) const
{
    PictureList pictures;
    bool function6 = false;
    RdfItem r = RptFileConverter::toRecord(*this, rec, false, pictures, function6);
    if (rec.ObjectType == ObjType::Image)
        r.formatOrFile = Prop(rec.control, "FileName").toString();
    return r;
}

// A stored record's properties onto its control; shared by loading, pasting and undo.
void clsRptControl::applyRecord(QObject* c, int kind, const RdfItem& r, const QStringList& pictureFiles)
{
    SetProp(c, "Left", r.left);
    SetProp(c, "Top", r.top);
    SetProp(c, "Width", float(r.width));
    SetProp(c, "Height", float(r.height));
    SetProp(c, "BorderStyle", int(r.borderStyle));
    SetProp(c, "BorderWidth", float(std::round(r.borderWidth / 20.0 * 100) / 100));
    SetProp(c, "BorderColor", r.borderColor);
    if (IsTextKind(kind)) {
        SetProp(c, "FontName", r.fontName);
        SetProp(c, "Fontsize", r.fontSize);
        SetProp(c, "FontBold", bool(r.flags & RdfFlag::Bold));
        SetProp(c, "FontItalic", bool(r.flags & RdfFlag::Italic));
        SetProp(c, "FontUnderline", bool(r.flags & RdfFlag::Underline));
        SetProp(c, "AllowGrow", bool(r.flags & RdfFlag::AllowGrow));
        SetProp(c, "AllowShrink", bool(r.flags & RdfFlag::AllowShrink));
        SetProp(c, "UseShortText", bool(r.flags & RdfFlag::ShortText));
        SetProp(c, "ForeColor", r.foreColor);
        SetProp(c, "BackColor", r.backColor);
        SetProp(c, "Backstyle", (r.flags & RdfFlag::Opaque) ? 1 : 0);
        SetProp(c, "SpecialEffect", int(r.specialEffect));
        SetProp(c, "Alignment", int(r.alignment));
        if (kind == ObjType::Field) {
            SetProp(c, "FormatClass", int(r.numberA));
            SetProp(c, "FunctionType", r.kind == RdfKind::FunctionField ? int(r.numberB) : 0);
        } else if (kind == ObjType::DateTime) {
            SetProp(c, "FormatClass", 2); // the file keeps no class for date stamps
        }
        SetProp(c, "DataFormat", r.formatOrFile);
        if (kind == ObjType::Field || kind == ObjType::DateTime)
            SetProp(c, "Text", DataView ? r.text : r.name);
        else
            SetProp(c, "Text", r.text);
    } else if (kind == ObjType::Box) {
        SetProp(c, "BackColor", r.backColor);
        SetProp(c, "Backstyle", (r.flags & RdfFlag::Opaque) ? 1 : 0);
    } else if (kind == ObjType::Image) {
        SetProp(c, "BackColor", r.backColor);
        SetProp(c, "SpecialEffect", int(r.specialEffect));
        SetProp(c, "Alignment", int(r.alignment));
        SetProp(c, "SizeMode", int(r.sizeMode));
        SetProp(c, "DataBound", r.dataBound);
        // A stored list position names one of the unpacked picture files.
        bool isPos = false;
        const int pos = r.formatOrFile.toInt(&isPos);
        const bool inList = isPos && pos >= 0 && pos < pictureFiles.size();
        if (r.dataBound) {
            SetProp(c, "PhotoSeq", int(r.numberA));
            SetProp(c, "Category", int(r.numberB));
            if (inList && DataView)
                SetProp(c, "FileName", pictureFiles.at(pos));
        } else if ((r.flags & RdfFlag::Embedded) && inList) {
            SetProp(c, "Embeded", true);
            SetProp(c, "FileName", pictureFiles.at(pos));
        } else {
            SetProp(c, "FileName", r.formatOrFile);
        }
    }
}

int clsRptControl::buildItems(const std::vector<RdfItem>& records, const QStringList& pictureFiles)
{
    const int firstNew = RptItemCount() + 1;
    for (const RdfItem& r : records) {
        ItemRecord rec;
        rec.ObjectType = r.kind == RdfKind::FunctionField ? ObjType::Field : r.kind;
        rec.Name = r.name;
        rec.Text = r.text;
        rec.DataField = r.dataField;
        rec.DicId = r.dicId;
        rec.CodeType = r.codeType;
        rec.Flags = (r.flags & RdfFlag::Expression) ? 1 : 0;
        QObject* c = m_win ? m_win->LoadItemControl(rec.ObjectType) : nullptr;
        rec.control = c;
        m_items.push_back(rec);
        const int index = RptItemCount();
        SetProp(c, "Tag", index);

        applyRecord(c, rec.ObjectType, r, pictureFiles);
    }
    emit itemsChanged();
    return firstNew;
}

void clsRptControl::LoadReport(const QString& FileName)
{
    const BusyPointer busy(m_win);

    // Read first: a file that cannot be read leaves the open report as it was.
    RdfReport rep = RdfLoadFile(FileName);
    if (RptItemCount() > 0)
        UnloadReport();
    DirtyFlag = false;

    QStringList pictureFiles;
    for (const QByteArray& bytes : rep.pictures) {
        const QString f = AddTempFile();
        QFile out(f);
        if (f.isEmpty() || !out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size())
            throw RdfError(HostErr::DiskFull, QStringLiteral("Cannot unpack a picture to a temporary file"));
        pictureFiles << f;
    }
    const RdfHeader& h = rep.header;
    m_fileName = FileName;
    HeaderFlags = h.headerFlags & ~2;
    TopMargin = h.topMargin;
    BottomMargin = h.bottomMargin;
    LeftMargin = h.leftMargin;
    RightMargin = h.rightMargin;
    NumberOfColumns = h.numberOfColumns == 0 ? 1 : h.numberOfColumns;
    m_sectionSpacing = float(std::round(h.sectionSpacingTwips / 1440.0 * 1e5) / 1e5);
    ReportOption = h.reportOption;
    Paper = RdfReadPaper(h);
    if (m_dic && h.dictionaryVersion != m_dic->Version())
        m_dic->Reload();
    AutoFillId = h.autoFillId;
    // The key goes into SQL as it stands: a damaged or doctored one is dropped, never run.
    if (!AutoFillId.isEmpty() && m_dic && !KeyIsSafe(m_dic->DatabaseKind(), AutoFillId)) {
        MsgBox(QStringLiteral("The record key stored in this report (") + AutoFillId.left(40) +
                   QStringLiteral(") is not valid; the report opens in template view."),
               Mb::OKOnly | Mb::Exclamation, QStringLiteral("Report Designer File error"));
        AutoFillId.clear();
    }
    DataView = !AutoFillId.isEmpty();
    if (m_win) {
        m_win->SetToolChecked(QStringLiteral("miDataView"), DataView);
        m_win->SetToolChecked(QStringLiteral("miTemplateView"), !DataView);
    }
    const int n = int(rep.items.size());
    const bool hasFooter = h.lastDetailItem < n;
    if ((h.firstDetailItem >= 2 || hasFooter) && m_win)
        m_win->SetHeaderFooter(float(h.detailTop) + BarHeight);
    RdfRestorePositions(rep.items, h);
    buildItems(rep.items, pictureFiles);
    if (hasFooter && m_win)
        m_win->MovePageFooterBar(float(h.pageFooterTop));
    DirtyFlag = false;
}

// ---------------------------------------------------------------- copy and paste

void clsRptControl::EditCopyControls()
{
    const QList<QObject*> sel = selection();
    if (sel.isEmpty())
        return;
    const BusyPointer busy(m_win);
    PictureList pictures;
    bool f6 = false;
    RdfReport rep;
    for (QObject* c : sel)
        if (const int i = indexOf(c))
            rep.items.push_back(RptFileConverter::toRecord(*this, Item(i), false, pictures, f6));
    // Pictures travel with the copy so that a paste after the source is gone still has them.
    for (const QString& f : std::as_const(pictures.files)) {
        QByteArray bytes;
        try {
            bytes = ReadRegularFile(f, kMaxPictureBytes);
        } catch (const HostError&) {
            // copied without its picture, as an unreadable file always was
        }
        rep.pictures.push_back(bytes);
    }
    rep.header.pictureCount = qint32(rep.pictures.size());
    rep.header.lastDetailItem = qint16(rep.items.size()); // one section: the copy keeps absolute tops
    try {
        RdfSaveFile(m_copyBuffer, rep);
        EditControlsPasted = true;
    } catch (const HostError& e) {
        MsgBox(e.Text(),
               Mb::OKOnly | Mb::Critical, QStringLiteral("Copy"));
    }
    SetEdit();
}

static float snapAbove(float v, int spacing)
{
    if (spacing <= 0)
        spacing = 60;
    v = std::max(v, 80.0f);
    // The smallest multiple strictly greater than the value.
    const double k = std::floor(double(v) / spacing) + 1;
    return float(k * spacing);
}

void clsRptControl::EditPasteControls(const QString& FileName, float& X, float& Y)
{
    const QString file = FileName.isEmpty() ? m_copyBuffer : FileName;
    const BusyPointer busy(m_win);
    RdfReport rep = RdfLoadFile(file); // a file that cannot be read changes nothing
    DirtyFlag = true;

    float minTop = 999999999.f, minLeft = 999999999.f;
    for (const RdfItem& r : rep.items) {
        minTop = std::min(minTop, r.top);
        minLeft = std::min(minLeft, r.left);
    }
    X = snapAbove(X, m_win ? m_win->GridIncX() : 60);
    Y = snapAbove(Y, m_win ? m_win->GridIncY() : 60);
    for (RdfItem& r : rep.items) {
        r.left += X - minLeft;
        r.top += Y - minTop;
    }
    QStringList pictureFiles;
    for (const QByteArray& bytes : rep.pictures) {
        const QString f = AddTempFile();
        QFile out(f);
        if (out.open(QIODevice::WriteOnly))
            out.write(bytes);
        pictureFiles << f;
    }
    const int first = buildItems(rep.items, pictureFiles);
    // Pasted names must not repeat the report's own (nor each other's).
    for (int i = first; i <= RptItemCount(); ++i)
        ItemRef(i).Name = freeName(i);
    if (first <= RptItemCount())
        emit itemsChanged();
    if (m_sel)
        m_sel->ClearSelection();
    for (int i = first; i <= RptItemCount(); ++i) {
        ItemRecord& rec = ItemRef(i);
        QObject* c = rec.control;
        if (!AutoFillId.isEmpty() && rec.ObjectType == ObjType::Field) {
            rec.Text = GetFieldValue(rec.DataField, rec.CodeType, rec.HasExpression(), Prop(c, "UseShortText").toBool());
            if (DataView)
                SetProp(c, "Text", rec.Text);
        } else if (rec.ObjectType == ObjType::Image && Prop(c, "DataBound").toBool() && !AutoFillId.isEmpty() && DataView) {
            SetProp(c, "FileName", GetBoundPhotoFile(AutoFillId, Prop(c, "PhotoSeq").toInt(), QString(), Prop(c, "Category").toInt()));
        } else if (rec.ObjectType == ObjType::DateTime) {
            rec.Text = RecordQuery::NowText();
            SetProp(c, "Text", rec.Text);
        }
        if (m_sel && c)
            m_sel->AddToSelection(c);
    }
    if (m_sel)
        m_sel->RefreshHandles();
}
