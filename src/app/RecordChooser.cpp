#include "RecordChooser.h"

#include "dialogs/frmFindProperty.h"
#include "entry/Host.h"
#include "entry/Prompts.h"
#include "output/RenderKeys.h"
#include "output/ReportRunMany.h"

std::optional<QStringList> ChooseRecordsToPrint(QWidget*, int databaseKind)
{
    if (!gHost)
        return std::nullopt;
    const QString caption = QStringLiteral("Print Many");
    try {
        std::unique_ptr<FieldDictionary> dic = gHost->NewFieldDictionary(databaseKind);
        // Listings have an owner: the user's own can be printed without searching.
        if (databaseKind == 1) {
            const int answer = MsgBox(QStringLiteral("Print the report for all of your listings?\n\n"
                                                     "Yes: every listing you hold.\nNo: choose listings in the property search."),
                                      Mb::YesNoCancel | Mb::Question, caption);
            if (answer == Mb::Cancel)
                return std::nullopt;
            if (answer == Mb::Yes) {
                const QStringList keys = RenderKeys::Select(*dic, QStringLiteral("ListAgentID = '~UserId~'"), QString());
                if (keys.isEmpty()) {
                    MsgBox(QStringLiteral("You hold no listings that you may print."), Mb::OKOnly | Mb::Information, caption);
                    return std::nullopt;
                }
                return keys;
            }
        }
        QStringList keys;
        // Several records may be chosen; listings start on "Active", the user's own offered first.
        if (frmFindProperty::Search(keys, *dic, 0, 5, 2) == 0)
            return std::nullopt;
        return keys;
    } catch (const HostError& e) {
        MsgBox(e.Text(), Mb::OKOnly | Mb::Critical, caption);
        return std::nullopt;
    }
}

void InstallRecordChooser() { SetRecordChooser(ChooseRecordsToPrint); }
