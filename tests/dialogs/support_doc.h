#pragma once
// A report document over the demo host with one field item, on a surface of plain objects.
#include "support_demo.h"
#include "document/clsRptControl.h"

#include <QObject>

class FieldControl : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString Text MEMBER Text)
public:
    QString Text;
};

class PlainSurface : public DesignSurface {
public:
    std::vector<std::unique_ptr<FieldControl>> controls;
    QList<int> pointers; // every pointer change, in order
    QObject* LoadItemControl(int) override { controls.push_back(std::make_unique<FieldControl>()); return controls.back().get(); }
    void UnloadItemControl(QObject*) override {}
    void SendToBack(QObject*) override {}
    float DetailHeaderBarOffset() const override { return 0; }
    float PageFooterBarOffset() const override { return 0; }
    void HideHeaderFooter() override {}
    void SetHeaderFooter(float) override {}
    void MovePageFooterBar(float) override {}
    void ClearDrawing() override {}
    int GridIncX() const override { return 60; }
    int GridIncY() const override { return 60; }
    void SetMousePointer(int p) override { pointers << p; }
    void SetToolText(const QString&, const QString&) override {}
    void SetToolChecked(const QString&, bool) override {}
    void SetToolEnabled(const QString&, bool) override {}
};

// A document of `kind` in data view showing the field `dicId`.
struct DocFixture {
    DemoHost host;
    std::unique_ptr<FieldDictionary> dic;
    PlainSurface surface;
    clsRptControl doc;
    DocFixture(int kind, int dicId) : dic(host.NewFieldDictionary(kind))
    {
        doc.Init(dic.get(), &surface, nullptr);
        doc.AddNew(ObjType::Field, QStringLiteral("Field"), dicId);
        doc.SetView(1);
    }
    QString shown() const { return surface.controls.front()->Text; }
};
