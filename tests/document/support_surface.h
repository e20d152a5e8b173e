#pragma once
// A design surface made of plain objects, so the document can be tested without the window.
#include "document/DesignSurface.h"
#include "document/clsRptControl.h"
#include "entry/Host.h"

#include <QMap>
#include <QObject>
#include <QVariant>
#include <memory>
#include <vector>

// Every property any item control has; kind restrictions are the document's job.
class TestControl : public QObject {
    Q_OBJECT
    Q_PROPERTY(int Tag MEMBER Tag)
    Q_PROPERTY(QString Text MEMBER Text)
    Q_PROPERTY(QString DataFormat MEMBER DataFormat)
    Q_PROPERTY(int FormatClass MEMBER FormatClass)
    Q_PROPERTY(int FunctionType MEMBER FunctionType)
    Q_PROPERTY(int Alignment MEMBER Alignment)
    Q_PROPERTY(int BorderStyle MEMBER BorderStyle)
    Q_PROPERTY(float BorderWidth MEMBER BorderWidth)
    Q_PROPERTY(quint32 BorderColor MEMBER BorderColor)
    Q_PROPERTY(QString FontName MEMBER FontName)
    Q_PROPERTY(float Fontsize MEMBER Fontsize)
    Q_PROPERTY(bool FontBold MEMBER FontBold)
    Q_PROPERTY(bool FontItalic MEMBER FontItalic)
    Q_PROPERTY(bool FontUnderline MEMBER FontUnderline)
    Q_PROPERTY(quint32 ForeColor MEMBER ForeColor)
    Q_PROPERTY(quint32 BackColor MEMBER BackColor)
    Q_PROPERTY(int Backstyle MEMBER Backstyle)
    Q_PROPERTY(int SpecialEffect MEMBER SpecialEffect)
    Q_PROPERTY(bool AllowGrow MEMBER AllowGrow)
    Q_PROPERTY(bool AllowShrink MEMBER AllowShrink)
    Q_PROPERTY(bool UseShortText MEMBER UseShortText)
    Q_PROPERTY(int SizeMode MEMBER SizeMode)
    Q_PROPERTY(QString FileName MEMBER FileName)
    Q_PROPERTY(int Category MEMBER Category)
    Q_PROPERTY(int PhotoSeq MEMBER PhotoSeq)
    Q_PROPERTY(bool DataBound MEMBER DataBound)
    Q_PROPERTY(bool Embeded MEMBER Embeded)
    Q_PROPERTY(QVariant Picture MEMBER Picture)
    Q_PROPERTY(bool Selected MEMBER Selected)
    Q_PROPERTY(float Left MEMBER Left)
    Q_PROPERTY(float Top MEMBER Top)
    Q_PROPERTY(float Width MEMBER Width)
    Q_PROPERTY(float Height MEMBER Height)
public:
    explicit TestControl(int k) : kind(k) {}
    int kind;
    int Tag = 0;
    QString Text, DataFormat, FontName = QStringLiteral("Arial"), FileName;
    int FormatClass = 0, FunctionType = 0, Alignment = 0, BorderStyle = 5, Backstyle = 0, SpecialEffect = 0, SizeMode = 0,
        Category = 0, PhotoSeq = 1;
    float BorderWidth = 1, Fontsize = 10, Left = 0, Top = 0, Width = 1440, Height = 300;
    quint32 BorderColor = 0, ForeColor = 0, BackColor = 0xFFFFFF;
    bool FontBold = false, FontItalic = false, FontUnderline = false, AllowGrow = false, AllowShrink = false,
         UseShortText = false, DataBound = false, Embeded = false, Selected = false;
    QVariant Picture;
};

class TestSurface : public DesignSurface, public SelectionManager {
public:
    std::vector<std::unique_ptr<TestControl>> controls;
    QList<QObject*> selected;
    QStringList events;
    QMap<QString, bool> checked, enabled;
    QMap<QString, QString> texts;
    float detailBar = 0, footerBar = 0;
    int gridX = 60, gridY = 60;
    int pointer = 0;

    QObject* LoadItemControl(int kind) override
    {
        controls.push_back(std::make_unique<TestControl>(kind));
        return controls.back().get();
    }
    void UnloadItemControl(QObject* c) override
    {
        selected.removeAll(c);
        for (auto it = controls.begin(); it != controls.end(); ++it)
            if (it->get() == c) { controls.erase(it); return; }
    }
    void SendToBack(QObject*) override { events << "SendToBack"; }
    float DetailHeaderBarOffset() const override { return detailBar; }
    float PageFooterBarOffset() const override { return footerBar; }
    void HideHeaderFooter() override { events << "HideHeaderFooter"; detailBar = footerBar = 0; }
    void SetHeaderFooter(float top) override { events << QStringLiteral("SetHeaderFooter %1").arg(double(top)); detailBar = top; }
    void MovePageFooterBar(float top) override { events << QStringLiteral("MovePageFooterBar %1").arg(double(top)); footerBar = top; }
    void ClearDrawing() override {}
    int GridIncX() const override { return gridX; }
    int GridIncY() const override { return gridY; }
    void SetMousePointer(int p) override { pointer = p; }
    void SetToolText(const QString& t, const QString& s) override { texts[t] = s; }
    void SetToolChecked(const QString& t, bool c) override { checked[t] = c; }
    void SetToolEnabled(const QString& t, bool e) override { enabled[t] = e; }

    QList<QObject*> SelectedControls() const override { return selected; }
    void AddToSelection(QObject* c) override { if (!selected.contains(c)) selected << c; }
    void RemoveFromSelection(QObject* c) override { selected.removeAll(c); }
    void ClearSelection() override { selected.clear(); }
    void RefreshHandles() override {}

    TestControl* control(QObject* o) { return static_cast<TestControl*>(o); }
};

// A document on a test surface, with a shortcut for adding placed items.
struct Doc {
    TestSurface surface;
    clsRptControl doc;
    Doc()
    {
        doc.Init(nullptr, &surface, nullptr);
        doc.SetSelectionManager(&surface);
    }
    TestControl* ctl(int i) { return surface.control(doc.Item(i).control); }
    TestControl* add(int kind, const QString& name, float left, float top, float width = 1440, float height = 300)
    {
        doc.AddNew(kind, name, 0);
        TestControl* c = ctl(doc.RptItemCount());
        c->Left = left;
        c->Top = top;
        c->Width = width;
        c->Height = height;
        return c;
    }
    void select(std::initializer_list<int> items)
    {
        surface.selected.clear();
        for (int i : items)
            surface.selected << doc.Item(i).control;
    }
};
