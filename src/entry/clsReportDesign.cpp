#include "entry/clsReportDesign.h"
#include "entry/Host.h"
#include "entry/HostError.h"

#include <vector>

namespace {
DesignWindowFactory g_designFactory;
FlyerWindowFactory g_flyerFactory;
QString g_helpFile;

std::vector<QPointer<QWidget>>& madeWindows()
{
    static std::vector<QPointer<QWidget>> windows;
    return windows;
}
} // namespace

void SetDesignWindowFactory(DesignWindowFactory factory) { g_designFactory = std::move(factory); }
void SetFlyerWindowFactory(FlyerWindowFactory factory) { g_flyerFactory = std::move(factory); }
QString ComponentHelpFile() { return g_helpFile; }

DesignWindow* NewDesignWindow()
{
    DesignWindow* w = g_designFactory ? g_designFactory() : nullptr;
    if (w && w->Widget()) {
        auto& made = madeWindows();
        std::erase_if(made, [](const QPointer<QWidget>& p) { return p.isNull(); });
        made.emplace_back(w->Widget());
    }
    return w;
}

int OpenDesignWindows()
{
    int open = 0;
    for (const QPointer<QWidget>& p : madeWindows())
        open += p && p->isVisible();
    return open;
}

clsReportDesign::~clsReportDesign() = default;

void clsReportDesign::Start(TervaneCommon* pTervaneCommon, int& JobIndex)
{
    gHost = pTervaneCommon;
    g_helpFile = gHost->HelpFile();

    // Switch is late-bound: missing or not a number simply is not 2.
    bool ok = false;
    const QVariant sw = gHost->MainForm().Switch();
    const int kind = sw.isValid() ? sw.toInt(&ok) : 0;
    QWidget* owner = gHost->MainForm().Window();

    if (ok && kind == 2) {
        if (!g_flyerFactory)
            throw HostError(HostErr::FileNotFound, QStringLiteral("The flyer manager is not available"));
        m_flyers = g_flyerFactory();
        m_flyersWidget = m_flyers->Widget();
        m_flyers->Init(JobIndex);
        if (m_flyersWidget) {
            if (owner)
                m_flyersWidget->setParent(owner, Qt::Window);
            m_flyersWidget->show();
        }
    } else {
        if (!g_designFactory)
            throw HostError(HostErr::FileNotFound, QStringLiteral("The report designer is not available"));
        m_design = g_designFactory();
        m_designWidget = m_design->Widget();
        if (m_designWidget) {
            if (owner)
                m_designWidget->setParent(owner, Qt::Window);
            m_designWidget->show();
        }
        m_design->Init(JobIndex, ok ? kind : 0, true);
    }
}

void clsReportDesign::UnloadObj()
{
    if (m_design) {
        if (m_designWidget)
            m_design->Unload();
        m_design = nullptr;
        m_designWidget = nullptr;
    } else if (m_flyers) {
        if (m_flyersWidget)
            m_flyers->Unload();
        m_flyers = nullptr;
        m_flyersWidget = nullptr;
    }
}
