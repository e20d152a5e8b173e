#pragma once
// The component's public entry: the host creates one and calls Start for a job.
#include <QPointer>
#include <QWidget>
#include <functional>

class TervaneCommon;

// What the entry needs of the two top-level windows; the windows themselves register
// factories so that the entry does not depend on their layers.
class ComponentWindow {
public:
    virtual ~ComponentWindow() = default;
    virtual QWidget* Widget() = 0;
    // Unload: close without asking and release the window.
    virtual void Unload() = 0;
};

class DesignWindow : public ComponentWindow {
public:
    virtual void Init(int jobIndex, int reportKind, bool showFieldList) = 0;
    // Opens reportFile (may be empty: a new report) titled title; a non-empty propertyId opens
    // it in data view on that record. False when the file could not be opened (the user has
    // been told why): the window then holds no report and should not be shown.
    virtual bool SetReport(const QString& reportFile, const QString& title, const QString& propertyId) = 0;
};

class FlyerWindow : public ComponentWindow {
public:
    virtual void Init(int jobIndex) = 0;
};

using DesignWindowFactory = std::function<DesignWindow*()>;
using FlyerWindowFactory = std::function<FlyerWindow*()>;
void SetDesignWindowFactory(DesignWindowFactory factory);
void SetFlyerWindowFactory(FlyerWindowFactory factory);
// A new design window from the registered factory (null when none is registered); it deletes
// itself when closed.
DesignWindow* NewDesignWindow();
// How many design windows made by NewDesignWindow are open (shown). They live on after the
// flyer manager that opened them closes, so a host ends only when none is left.
int OpenDesignWindows();

// The help file the component's windows open; set by Start before any window exists.
QString ComponentHelpFile();

class clsReportDesign {
public:
    clsReportDesign() = default;
    ~clsReportDesign();
    clsReportDesign(const clsReportDesign&) = delete;
    clsReportDesign& operator=(const clsReportDesign&) = delete;

    void Start(TervaneCommon* pTervaneCommon, int& JobIndex);
    void UnloadObj();

    // The open windows (null when none or closed).
    DesignWindow* DesignForm() const { return m_design && m_designWidget ? m_design : nullptr; }
    FlyerWindow* FlyerForm() const { return m_flyers && m_flyersWidget ? m_flyers : nullptr; }

private:
    DesignWindow* m_design = nullptr;
    QPointer<QWidget> m_designWidget;
    FlyerWindow* m_flyers = nullptr;
    QPointer<QWidget> m_flyersWidget;
};
