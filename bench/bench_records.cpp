// kelform's record paths against the size of the table: opening the order form, moving to the
// next order and saving one, on 1,000, 100,000 and 1,000,000 orders (SQLite, and PostgreSQL when
// KEL_PG names a server), each size against the 1,000-row figure. Then one record move on a form
// of 300 mapped controls against the same move with stock Qt widgets mapped from the same store.
//   bench_records [--benchmark_filter=...]   the sizes take a while to build (bulk inserts)
// Under valgrind (scripts/perf) the tables hold a tenth of the rows their names say.
#include "formdatabase.h"
#include "formloader.h"
#include "recordform.h"
#include "recordstore.h"

#include "controls/check/kelcheck.h"
#include "controls/combo/kelcombo.h"
#include "controls/datetime/keldate.h"
#include "controls/datetime/keltime.h"
#include "controls/number/kelnumber.h"
#include "controls/text/keltext.h"
#include "platform/services.h"
#include "benchratio.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QMetaProperty>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTimeEdit>
#include <QUrl>

#include <cstdio>
#include <map>
#include <unistd.h>

using namespace kel;
using namespace kel::kelform;

namespace {

enum Engine { Sqlite, Postgres };

int rowScale() { return RUNNING_ON_VALGRIND ? 10 : 1; }
const int RowScale = rowScale();

QTemporaryDir &tempDir()
{
    static QTemporaryDir dir;
    return dir;
}

// The orders table with `rows` orders, made once per engine and size; the name of its connection.
QString ordersDatabase(Engine engine, qint64 rows)
{
    static std::map<std::pair<int, qint64>, QString> made;
    const auto key = std::make_pair(int(engine), rows);
    if (const auto it = made.find(key); it != made.end())
        return it->second;
    const QString connection = QStringLiteral("%1_%2").arg(QLatin1String(engine == Sqlite ? "sqlite" : "pg")).arg(rows);
    QString where = tempDir().filePath(connection + QStringLiteral(".sqlite"));
    if (engine == Postgres) {
        QUrl url(qEnvironmentVariable("KEL_PG"));
        QString error;
        QSqlDatabase admin = openDatabase(url.toString(), &error, {QStringLiteral("admin")});
        QSqlQuery(admin).exec(QStringLiteral("DROP DATABASE IF EXISTS kelbench_%1").arg(rows));
        QSqlQuery(admin).exec(QStringLiteral("CREATE DATABASE kelbench_%1").arg(rows));
        url.setPath(QStringLiteral("/kelbench_%1").arg(rows));
        where = url.toString();
    }
    QString error;
    QSqlDatabase db = openDatabase(where, &error, {connection});
    if (!db.isOpen()) {
        std::fprintf(stderr, "bench_records: %s\n", qPrintable(error));
        std::exit(1);
    }
    // One statement in one transaction: the seed's five orders, then the rest.
    const QString fill = engine == Sqlite
        ? QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 6 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
                         "INSERT INTO orders (customer_ref, customer_id, order_date, delivery_time, quantity, unit_price, paid, notes) "
                         "SELECT 'PO-' || i, 101 + i % 5, date('now', '-' || (i % 300) || ' days'), '09:30:00', 1 + i % 50, "
                         "round(1 + (i % 1000) / 10.0, 2), i % 2, 'Order number ' || i FROM n")
        : QStringLiteral("INSERT INTO orders (customer_ref, customer_id, order_date, delivery_time, quantity, unit_price, paid, notes) "
                         "SELECT 'PO-' || i, 101 + i % 5, current_date - (i % 300), '09:30:00', 1 + i % 50, "
                         "round(1 + (i % 1000) / 10.0, 2), i % 2, 'Order number ' || i FROM generate_series(6, %1) AS i");
    db.transaction();
    QSqlQuery q(db);
    if (!q.exec(fill.arg(rows / RowScale)) || !db.commit()) {
        std::fprintf(stderr, "bench_records: %s\n", qPrintable(q.lastError().text()));
        std::exit(1);
    }
    if (engine == Postgres)
        q.exec(QStringLiteral("ANALYZE orders"));
    made[key] = connection;
    return connection;
}

std::unique_ptr<RecordForm> orderForm(const QString &connection)
{
    FormLoader loader;
    QString error;
    QWidget *ui = loader.loadFile(QStringLiteral(":/orders/orders.ui"), nullptr, &error);
    return std::make_unique<RecordForm>(ui, QSqlDatabase::database(connection));
}

double residentMB()
{
    long pages = 0, resident = 0;
    if (FILE *f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(f);
    }
    return double(resident) * double(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

template<Engine engine>
void open(benchmark::State &state)
{
    const QString connection = ordersDatabase(engine, state.range(0));
    for (auto _ : bench::measured(state)) {
        bench::pause(state);
        FormLoader loader;
        QString error;
        QWidget *ui = loader.loadFile(QStringLiteral(":/orders/orders.ui"), nullptr, &error);
        bench::resume(state);
        auto form = std::make_unique<RecordForm>(ui, QSqlDatabase::database(connection));
        benchmark::DoNotOptimize(form->currentKey());
        bench::pause(state);
        form.reset();
        bench::resume(state);
    }
    state.counters["resident_MB"] = residentMB();
}

template<Engine engine>
void next(benchmark::State &state)
{
    const auto form = orderForm(ordersDatabase(engine, state.range(0)));
    for (auto _ : bench::measured(state))
        if (!form->next())
            form->first();
}

template<Engine engine>
void save(benchmark::State &state)
{
    const auto form = orderForm(ordersDatabase(engine, state.range(0)));
    form->last();
    QWidget *price = form->form()->findChild<QWidget *>(QStringLiteral("unit_price"));
    double value = 10;
    for (auto _ : bench::measured(state)) {
        price->setProperty("Value", value = 21 - value);
        if (!form->save()) {
            state.SkipWithError("the save was refused");
            break;
        }
    }
}

// A table of 300 columns of six kinds and 50 records, shown by Kel controls through RecordForm
// and by stock widgets through the same store.
constexpr int Columns = 300, WideRows = 50;
const char *const comboItems[] = {"Alpha", "Beta", "Gamma", "Delta"};

QString wideDatabase()
{
    static QString connection;
    if (!connection.isEmpty())
        return connection;
    QString error;
    QSqlDatabase db = openDatabase(tempDir().filePath(QStringLiteral("wide.sqlite")), &error, {QStringLiteral("wide")});
    QStringList columns{QStringLiteral("id INTEGER PRIMARY KEY")};
    for (int c = 0; c < Columns; ++c)
        columns << QStringLiteral("c%1 %2").arg(c).arg(QLatin1String(c % 6 == 1 || c % 6 == 5 ? "REAL" : "TEXT"));
    db.transaction();
    QSqlQuery q(db);
    q.exec(QStringLiteral("CREATE TABLE wide (%1)").arg(columns.join(u", ")));
    for (int r = 0; r < WideRows; ++r) {
        QStringList values{QString::number(r + 1)};
        for (int c = 0; c < Columns; ++c) {
            switch (c % 6) {
            case 0: values << QStringLiteral("'text %1.%2'").arg(r).arg(c); break;
            case 1: values << QString::number(r * 1.25 + c); break;
            case 2: values << QStringLiteral("'%1'").arg(QDate(2024, 1, 1).addDays(r + c).toString(Qt::ISODate)); break;
            case 3: values << QStringLiteral("'%1'").arg(QTime(8, 0).addSecs(60 * (r + c)).toString(QStringLiteral("HH:mm:ss"))); break;
            case 4: values << QString::number(1 + (r + c) % 4); break;
            default: values << QString::number((r + c) % 2); break;
            }
        }
        q.exec(QStringLiteral("INSERT INTO wide VALUES (%1)").arg(values.join(u", ")));
    }
    db.commit();
    connection = QStringLiteral("wide");
    return connection;
}

QRect cellRect(int c) { return QRect((c % 6) * 210, (c / 6) * 22, 200, 20); }

void moveKel(benchmark::State &state)
{
    const QString connection = wideDatabase();
    auto *ui = new QWidget;
    ui->setProperty("table", QStringLiteral("wide"));
    for (int c = 0; c < Columns; ++c) {
        QWidget *w = nullptr;
        switch (c % 6) {
        case 0: w = new KelText(ui); break;
        case 1: w = new KelNumber(ui); break;
        case 2: w = new KelDate(ui); break;
        case 3: w = new KelTime(ui); break;
        case 4: {
            auto *combo = new KelCombo(ui);
            QStringList items;
            for (const char *item : comboItems)
                items << QLatin1String(item);
            combo->ListFromArray(items);
            combo->setListTag(QStringLiteral("1,2,3,4"));
            w = combo;
            break;
        }
        default: w = new KelCheck(ui); break;
        }
        w->setObjectName(QStringLiteral("c%1").arg(c));
        w->setGeometry(cellRect(c));
    }
    ui->resize(1280, 1120);
    RecordForm form(ui, QSqlDatabase::database(connection));
    form.show();
    QApplication::processEvents();
    for (auto _ : bench::measured(state))
        if (!form.next())
            form.first();
}

// The stock widgets, each given its cell, and the same position line: through each widget's own
// typed setter, or (`userProperty`) through its USER property as the Kel controls are.
template<bool userProperty>
void moveQt(benchmark::State &state)
{
    RecordStore store(QSqlDatabase::database(wideDatabase()), QStringLiteral("wide"));
    QWidget window;
    QList<QWidget *> widgets;
    for (int c = 0; c < Columns; ++c) {
        QWidget *w = nullptr;
        switch (c % 6) {
        case 0: w = new QLineEdit(&window); break;
        case 1: w = new QDoubleSpinBox(&window); static_cast<QDoubleSpinBox *>(w)->setRange(-1e9, 1e9); break;
        case 2: w = new QDateEdit(&window); break;
        case 3: w = new QTimeEdit(&window); break;
        case 4: {
            auto *combo = new QComboBox(&window);
            for (int i = 0; i < 4; ++i)
                combo->addItem(QLatin1String(comboItems[i]), i + 1);
            w = combo;
            break;
        }
        default: w = new QCheckBox(&window); break;
        }
        w->setGeometry(cellRect(c));
        widgets << w;
    }
    window.resize(1280, 1120);
    window.show();
    QApplication::processEvents();
    QString position;
    store.first();
    for (auto _ : bench::measured(state)) {
        if (!store.next())
            store.first();
        const QSqlRecord &r = store.current();
        for (int c = 0; c < Columns; ++c) {
            const QVariant v = r.value(c + 1);
            QWidget *w = widgets[c];
            if constexpr (userProperty) {
                QVariant shown;
                switch (c % 6) {
                case 2: shown = QDate::fromString(v.toString(), Qt::ISODate); break;
                case 3: shown = QTime::fromString(v.toString(), Qt::ISODate); break;
                case 4: shown = QLatin1String(comboItems[(v.toInt() + 3) % 4]); break;
                case 5: shown = v.toInt() != 0; break;
                default: shown = v; break;
                }
                w->metaObject()->userProperty().write(w, shown);
                continue;
            }
            switch (c % 6) {
            case 0: static_cast<QLineEdit *>(w)->setText(v.toString()); break;
            case 1: static_cast<QDoubleSpinBox *>(w)->setValue(v.toDouble()); break;
            case 2: static_cast<QDateEdit *>(w)->setDate(QDate::fromString(v.toString(), Qt::ISODate)); break;
            case 3: static_cast<QTimeEdit *>(w)->setTime(QTime::fromString(v.toString(), Qt::ISODate)); break;
            case 4: static_cast<QComboBox *>(w)->setCurrentIndex(static_cast<QComboBox *>(w)->findData(v.toInt())); break;
            default: static_cast<QCheckBox *>(w)->setChecked(v.toInt() != 0); break;
            }
        }
        const RecordStore::Position p = store.position(RecordForm::CountLimit);
        position = QStringLiteral("Record %1 of %2").arg(p.index).arg(p.count);
        benchmark::DoNotOptimize(position);
    }
}

const std::vector<long> sizes{1000, 100000, 1000000};

void sized(benchmark::internal::Benchmark *b)
{
    for (long rows : sizes)
        b->Arg(rows);
    b->Unit(benchmark::kMicrosecond);
}

} // namespace

int main(int argc, char **argv)
{
    auto quiet = std::make_unique<RecordingServices>();
    quiet->now = QDateTime::currentDateTime();
    setServices(std::move(quiet));
    std::vector<std::pair<std::string, std::string>> names;
    auto add = [&](const char *name, void (*fn)(benchmark::State &)) {
        benchmark::RegisterBenchmark(name, fn)->Apply(sized);
        for (long rows : sizes)
            if (rows != sizes.front())
                names.emplace_back(std::string(name) + '/' + std::to_string(rows), std::string(name) + '/' + std::to_string(sizes.front()));
    };
    add("open_sqlite", open<Sqlite>);
    add("next_sqlite", next<Sqlite>);
    add("save_sqlite", save<Sqlite>);
    if (!qEnvironmentVariableIsEmpty("KEL_PG")) {
        add("open_postgresql", open<Postgres>);
        add("next_postgresql", next<Postgres>);
        add("save_postgresql", save<Postgres>);
    }
    benchmark::RegisterBenchmark("move_300_kel", moveKel)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("move_300_qt", moveQt<false>)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("move_300_qt_userprop", moveQt<true>)->Unit(benchmark::kMicrosecond);
    names.emplace_back("move_300_kel", "move_300_qt");
    names.emplace_back("move_300_kel", "move_300_qt_userprop");
    std::vector<std::pair<const char *, const char *>> pairs;
    for (const auto &[a, b] : names)
        pairs.emplace_back(a.c_str(), b.c_str());
    return bench::runWithRatios(argc, argv, pairs);
}
