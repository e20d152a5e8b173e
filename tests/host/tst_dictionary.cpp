// The table-driven field dictionary over the demo catalogue.
#include "host/EmbeddedHost.h"
#include "host/TableDictionary.h"
#include "support_host.h"

#include <QtTest>

class TestDictionary : public QObject {
    Q_OBJECT
    std::unique_ptr<EmbeddedHost> m_host;

    static QString replaceTokens(QString sql, const TervaneCommon& host)
    {
        sql.replace(QLatin1String("'~AccessKey~'"), host.AccessKey());
        sql.replace(QLatin1String("'~UserId~'"), QLatin1Char('\'') + host.AgentId() + QLatin1Char('\''));
        return sql;
    }

private slots:
    void initTestCase() { m_host = EmbeddedHost::Open(SmallDemoFolder()); }

    // Table and key names of every kind are proven by everyFieldRuns; SQLite ignores the case of
    // names, so the rentals key's spelling (the photo join depends on it) is checked here.
    void kindsAndUnknownNames()
    {
        auto rentals = m_host->NewFieldDictionary(5);
        QCOMPARE(rentals->DatabaseKind(), 5);
        QCOMPARE(rentals->KeyField(), QStringLiteral("Listnum"));
        QCOMPARE(int(rentals->Version()), 2);
        QCOMPARE(int(m_host->NewFieldDictionary(1)->Version()), 3);
        try {
            m_host->NewFieldDictionary(9);
            QFAIL("kind 9 was accepted");
        } catch (const HostError& e) {
            QCOMPARE(e.Number(), HostErr::NoSuchField);
        }
        auto d = m_host->NewFieldDictionary(1);
        QVERIFY_THROWS_EXCEPTION(HostError, d->FieldName()); // nothing selected yet
        d->SelectField(2);
        QVERIFY_THROWS_EXCEPTION(HostError, d->SelectField(999));
        QCOMPARE(d->FieldColumnName(), QStringLiteral("ListPrice")); // a failed select keeps the current field
        QVERIFY_THROWS_EXCEPTION(HostError, d->SelectFieldByName(QStringLiteral("NoSuchColumn")));
    }

    void statusField()
    {
        auto d = m_host->NewFieldDictionary(1);
        d->SelectField(7);
        QCOMPARE(d->FieldColumnName(), QStringLiteral("LstStatus"));
        QCOMPARE(d->FieldCodeType(), 1);
        QCOMPARE(d->FieldDataType(), 10);
        QCOMPARE(d->FieldExpression(), QString());
        const std::vector<CodeListEntry> codes = d->FillCodeList();
        QCOMPARE(int(codes.size()), 7);
        QCOMPARE(codes.front().text, QStringLiteral("Active"));
        QCOMPARE(codes.front().code, QStringLiteral("2001"));
        QCOMPARE(codes.back().code, QStringLiteral("2007"));
        QCOMPARE(d->DecodeLong(QStringLiteral("2003")), QStringLiteral("Sold"));
        QCOMPARE(d->DecodeShort(QStringLiteral("2002")), QStringLiteral("PND"));
        QCOMPARE(d->DecodeLong(QStringLiteral("res")), QStringLiteral("Residential")); // any field's code, any case
        QCOMPARE(d->DecodeLong(QStringLiteral("9999")), QStringLiteral("9999"));
        QCOMPARE(d->DecodeShort(QString()), QString());
    }

    void groupsField()
    {
        auto d = m_host->NewFieldDictionary(1);
        d->SelectField(5);
        auto rs = d->FieldCodes(true, true);
        QCOMPARE(rs->Columns(), QStringList({"Code", "Description"}));
        QCOMPARE(RowsOf(*rs), QStringList({"GEN|General", "ADR|Address", "FIN|Financial", "FEA|Features", "AGT|Agents"}));
        QCOMPARE(RowsOf(*d->FieldCodes(false, false)), QStringList({"ADR|Addr", "AGT|Agts", "FEA|Feat", "FIN|Fin", "GEN|Gen"}));
    }

    void fieldLists()
    {
        auto d = m_host->NewFieldDictionary(1);
        d->SetFieldGroup(QStringLiteral("FIN"));
        QStringList names;
        for (const FieldListEntry& e : d->FillFieldList())
            names << QStringLiteral("%1=%2").arg(e.name).arg(e.dicId);
        QCOMPARE(names, QStringList({"List Price=2", "Sale Price=17", "Taxes=18", "Price per Sq Ft=19", "Sale Date=20"}));
        d->SetFieldGroup(QString());
        const auto all = d->FillFieldList();
        QCOMPARE(int(all.size()), 37);
        for (const FieldListEntry& e : all)
            QVERIFY2(e.dicId != 5, "the group field is not a field to drag");
        auto other = m_host->NewFieldDictionary(3);
        other->SetFieldGroup(QString());
        QCOMPARE(int(other->FillFieldList().size()), 10);
    }

    void selectByName()
    {
        auto d = m_host->NewFieldDictionary(1);
        d->SelectFieldByName(QStringLiteral("listagentname"));
        QCOMPARE(d->DicId(), 31);
        QCOMPARE(d->FieldName(), QStringLiteral("List Agent"));
        QVERIFY(d->FieldExpression().contains(QLatin1String("Listings.ListAgentID")));
        d->SelectFieldByName(QStringLiteral("List Price")); // display names work too
        QCOMPARE(d->FieldColumnName(), QStringLiteral("ListPrice"));
        QCOMPARE(d->FieldFormat(), QStringLiteral("Currency"));
        QCOMPARE(d->FieldDataType(), 5);
        d->Reload();
        QVERIFY_THROWS_EXCEPTION(HostError, d->DicId()); // reload forgets the current field
    }

    // Every catalogue entry must run: plain columns exist, expressions translate and execute.
    void everyFieldRuns()
    {
        for (int kind = 1; kind <= 5; ++kind) {
            auto d = m_host->NewFieldDictionary(kind);
            d->SetFieldGroup(QString());
            auto first = m_host->Database().OpenRecordset(kind, QStringLiteral("SELECT Min(%1) AS K FROM %2").arg(d->KeyField(), d->TableName()));
            QVariant key = first->Fields(0);
            const QString keyText = key.typeId() == QMetaType::QString ? QLatin1Char('\'') + key.toString() + QLatin1Char('\'') : key.toString();
            for (const FieldListEntry& e : d->FillFieldList()) {
                d->SelectField(e.dicId);
                const QString item = d->FieldExpression().isEmpty() ? d->FieldColumnName()
                                                                    : d->FieldExpression() + QStringLiteral(" AS ") + d->FieldColumnName();
                const QString sql = replaceTokens(QStringLiteral("SELECT %1 FROM %2 WHERE %3 = %4;").arg(item, d->TableName(), d->KeyField(), keyText), *m_host);
                try {
                    auto rs = m_host->Database().OpenRecordset(kind, sql);
                    QCOMPARE(rs->RecordCount(), 1);
                    QCOMPARE(rs->FieldName(0), d->FieldColumnName());
                } catch (const HostError& ex) {
                    QFAIL(qPrintable(QStringLiteral("%1: %2").arg(sql, ex.Description())));
                }
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestDictionary)
#include "tst_dictionary.moc"
