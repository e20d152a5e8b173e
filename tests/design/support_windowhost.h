#pragma once
// A host over a real temporary folder, for testing the design window: AppPath and UserPath
// point into it, so User.ini and the report folders are real files.
#include "design/frmPagewright.h"
#include "design/Zoom.h"
#include "entry/Host.h"
#include "entry/Prompts.h"

#include "design/CommandBar.h"
#include "design/DesignPage.h"
#include "design/DragBox.h"
#include "design/clsResize.h"
#include "document/clsRptControl.h"

#include <QAction>
#include <QBackingStore>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QtTest>
#include <QTemporaryDir>
#include <memory>
#include <qpa/qplatformbackingstore.h>

class WindowTestMainForm : public HostMainForm {
public:
    QVariant sw = 1;
    QVariant Switch() const override { return sw; }
    void SetSwitch(const QVariant& v) override { sw = v; }
    QWidget* Window() const override { return nullptr; }
};

class NoDatabase : public Database {
public:
    std::unique_ptr<Recordset> OpenRecordset(int, const QString&, int, int, int) override
    {
        throw HostError(3078, QStringLiteral("No database in this test"));
    }
};

class WindowTestHost : public TervaneCommon {
public:
    QTemporaryDir dir;
    ScriptedPrompter prompts; // every message box and file chooser of the test
    WindowTestMainForm form;
    NoDatabase db;
    ::AppEvents events;
    QList<QVariant> closedJobs;
    int level = 100;

    WindowTestHost()
    {
        QDir(dir.path()).mkpath(QStringLiteral("Users/tester/Reports/Listings"));
        gHost = this;
    }
    ~WindowTestHost() override
    {
        if (gHost == this)
            gHost = nullptr;
    }
    QString Local(const QString& rel) const { return dir.path() + QLatin1Char('/') + rel; }
    QString UserIniPath() const { return Local(QStringLiteral("Users/tester/User.ini")); }

    HostMainForm& MainForm() override { return form; }
    ::Database& Database() override { return db; }
    ::AppEvents& AppEvents() override { return events; }
    void CloseJob(const QVariant& j) override { closedJobs << j; }
    QString AppPath() const override { return dir.path() + QLatin1Char('/'); }
    QString UserPath() const override { return dir.path() + QStringLiteral("/Users/tester"); }
    QString UserName() const override { return QStringLiteral("tester"); }
    QString OfficeId() const override { return QStringLiteral("OF1"); }
    QString AgentId() const override { return QStringLiteral("AG1"); }
    int UserLevel() const override { return level; }
    QString DataPath() const override { return dir.path(); }
    QString AccessKey() const override { return QStringLiteral("1"); }
    int BoardId() const override { return 0; }
    QString StatusList() const override { return {}; }
    QString HelpFile() const override { return {}; }
    std::unique_ptr<FieldDictionary> NewFieldDictionary(int) override { return nullptr; }
    PhotoLibrary& PhotoService() override { throw HostError(91, QStringLiteral("Object variable not set")); }
};

// --- driving the window as a user does

using Window = std::unique_ptr<frmPagewright, void (*)(frmPagewright*)>;

inline Window Open(int kind = 1, int job = 7)
{
    Window w(new frmPagewright, [](frmPagewright* p) {
        p->setAttribute(Qt::WA_DeleteOnClose, false);
        delete p;
    });
    w->setAttribute(Qt::WA_DeleteOnClose, false);
    w->show();
    w->Init(job, kind, true);
    if (!QTest::qWaitForWindowExposed(w.get()))
        qWarning("window not exposed");
    return w;
}

inline QWidget* Viewport(frmPagewright& w) { return w.Page().View()->viewport(); }

// What the window shows of `widget` now, stale paint included: its window's backing store, not a
// fresh rendering as grab() makes. Compared with grab(), it finds areas nobody repainted.
inline QImage OnScreen(QWidget* widget)
{
    QWidget* top = widget->window();
    QPlatformBackingStore* store = top->backingStore() ? top->backingStore()->handle() : nullptr;
    if (!store)
        return {};
    const qreal dpr = top->devicePixelRatio();
    const QRect r(widget->mapTo(top, QPoint(0, 0)) * dpr, widget->size() * dpr);
    return store->toImage().copy(r).convertToFormat(QImage::Format_RGB32);
}

// The page point under the pixel nearest to p: what a real click there delivers.
inline QPointF Actual(frmPagewright& w, QPointF p) { return w.Page().PagePoint(w.Page().ViewportPixel(p)); }
inline double Floor60(double v) { return std::floor(v / 60) * 60; }

inline void Drag(frmPagewright& w, QPointF from, QPointF to, Qt::KeyboardModifiers mods = {})
{
    QWidget* vp = Viewport(w);
    const QPoint a = w.Page().ViewportPixel(from), b = w.Page().ViewportPixel(to);
    QTest::mousePress(vp, Qt::LeftButton, mods, a);
    QTest::mouseMove(vp, (a + b) / 2);
    QTest::mouseMove(vp, b);
    QTest::mouseRelease(vp, Qt::LeftButton, mods, b);
}

inline void Click(frmPagewright& w, QPointF at)
{
    QTest::mouseClick(Viewport(w), Qt::LeftButton, {}, w.Page().ViewportPixel(at));
}

inline void Tool(frmPagewright& w, const char* name)
{
    QAction* a = w.Commands().Action(QString::fromLatin1(name));
    QVERIFY2(a, name);
    QVERIFY2(a->isEnabled(), name);
    a->trigger();
}

// Picks a tool and drags it out on the page.
inline void Draw(frmPagewright& w, const char* tool, QPointF from, QPointF to)
{
    Tool(w, tool);
    Drag(w, from, to);
}

// Types into the in-place label editor and confirms.
inline void TypeLabel(frmPagewright& w, const QString& text)
{
    QTest::keyClicks(w.TextEditor(), text);
    QTest::keyClick(w.TextEditor(), Qt::Key_Return);
}

inline QRectF Geometry(QObject* c)
{
    return {clsRptControl::Prop(c, "Left").toDouble(), clsRptControl::Prop(c, "Top").toDouble(),
            clsRptControl::Prop(c, "Width").toDouble(), clsRptControl::Prop(c, "Height").toDouble()};
}

inline QObject* Control(frmPagewright& w, int index) { return w.Document().Item(index).control; }

// A point that takes hold of the item: new boxes are transparent, hit only near their edges.
inline QPointF Grip(QObject* c)
{
    const QRectF r = Geometry(c);
    return {r.left() + 15, r.center().y()};
}

// The middle of a shown handle of the item's frame.
inline QPointF HandleGrip(frmPagewright& w, QObject* c, int index)
{
    const DragBox* f = w.SelObj().Frame(c);
    return f ? f->ResizeHandle(index)->PagePos() + QPointF(DragBox::HandleSize, DragBox::HandleSize) / 2 : QPointF();
}

inline QString WritePicture(const QString& path)
{
    QImage img(16, 12, QImage::Format_RGB32);
    img.fill(Qt::red);
    img.save(path, "BMP");
    return path;
}


// The record prompt, scripted: every key it is asked with is kept; while answer is set it
// chooses listing 240001, otherwise it is cancelled.
struct ScriptedRecordPrompt {
    QStringList asked;
    bool answer = false;
    ScriptedRecordPrompt()
    {
        SetPropertyPrompt([this](clsRptControl& doc, const QString& key) {
            asked << key;
            if (answer)
                doc.AutoFillId = QStringLiteral("240001");
            return answer;
        });
    }
    ~ScriptedRecordPrompt() { SetPropertyPrompt(nullptr); }
};
