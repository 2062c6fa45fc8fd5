#include "hit_scores_view.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <chrono>

#include "platform/guarded_application.h"
#include "platform/twips.h"
#include "scores/hit_scores.h"

namespace halvane::app {

namespace {
TimePoint now() {
    return std::chrono::steady_clock::now();
}
}  // namespace

HitScoresView::HitScoresView(FrmHitScores& model, QWidget* parent)
    : QDialog(parent), m_model(model), m_alive(model.lifetime()), m_machine(&model) {
    setObjectName("FrmHitScores");
    setWindowTitle(FrmHitScores::Caption);
    auto* layout = new QVBoxLayout(this);
    auto* menuBar = new QMenuBar;
    QMenu* file = menuBar->addMenu("&File");
    file->setObjectName("M_File");
    const struct {
        const char* name;
        const char* caption;
        std::function<void()> run;
    } items[] = {{"M_Download", "&Download", [this] { m_model.CmdDownload_Click(now()); }},
                 {"M_Print", "&Print", [this] { m_model.CmdPrint_Click(); }},
                 {"M_Save", "&Save", [this] { m_model.CmdSave_Click(); }},
                 {"M_Config", "&Configure", [this] { m_model.M_Config_Click(); }}};
    for (const auto& item : items) {
        QAction* action = file->addAction(item.caption);
        action->setObjectName(item.name);
        connect(action, &QAction::triggered, this, [this, run = item.run] { act(run); });
    }
    layout->setMenuBar(menuBar);

    m_grid = new QTableWidget(0, 2);
    m_grid->setObjectName("Grid");
    m_grid->verticalHeader()->hide();
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    for (int c = 0; c < 2; ++c) m_grid->setColumnWidth(c, toPixels(m_model.Grid.ColWidth(c)));
    layout->addWidget(m_grid);
    m_progress = new QLabel;
    m_progress->setObjectName("progress");
    layout->addWidget(m_progress);

    auto* buttons = new QHBoxLayout;
    const struct {
        const Control& control;
        const char* name;
        std::function<void()> run;
    } commands[] = {{model.CmdDownload, "CmdDownload", [this] { m_model.CmdDownload_Click(now()); }},
                    {model.CmdClear, "CmdClear", [this] { m_model.CmdClear_Click(now()); }},
                    {model.CmdPrint, "CmdPrint", [this] { m_model.CmdPrint_Click(); }},
                    {model.CmdSave, "CmdSave", [this] { m_model.CmdSave_Click(); }}};
    for (const auto& command : commands) {
        auto* b = new QPushButton(QString::fromStdString(command.control.Caption));
        b->setObjectName(command.name);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, [this, run = command.run] { act(run); });
        buttons->addWidget(b);
    }
    layout->addLayout(buttons);
    resize(360, 520);

    model.setChangeObserver([this] { refresh(); });
    if (auto* app = GuardedApplication::instance()) {
        app->deadlines().add(*m_machine);
        m_onClock = true;
    }
    refresh();
}

HitScoresView::~HitScoresView() {
    if (m_onClock) GuardedApplication::instance()->deadlines().remove(*m_machine);
    if (!m_alive.expired()) m_model.setChangeObserver({});
}

void HitScoresView::act(const std::function<void()>& handler) {
    GuardedApplication::handle(handler);
    refresh();
}

void HitScoresView::refresh() {
    const ProgramGrid& g = m_model.Grid;
    if (g.Rows() < 1) return;
    m_grid->setHorizontalHeaderLabels(
        {QString::fromStdString(g.TextMatrix(0, 0)), QString::fromStdString(g.TextMatrix(0, 1))});
    m_grid->setRowCount(g.Rows() - 1);
    for (int r = 1; r < g.Rows(); ++r) {
        for (int c = 0; c < 2; ++c) {
            auto* item = m_grid->item(r - 1, c);
            if (!item) {
                item = new QTableWidgetItem;
                item->setTextAlignment(Qt::AlignCenter);
                if (c == 0) item->setBackground(palette().color(QPalette::Button));
                m_grid->setItem(r - 1, c, item);
            }
            item->setText(QString::fromStdString(g.TextMatrix(r, c)));
        }
        const auto height = static_cast<std::size_t>(r) < m_model.RowHeight.size() ? m_model.RowHeight[r] : 1;
        m_grid->setRowHidden(r - 1, height == 0);
    }
    m_progress->setText(QString::fromStdString(m_model.progress()));
    m_progress->setVisible(m_model.busy());
}

void HitScoresView::reject() {
    act([this] { m_model.Escape(); });
}

void HitScoresView::closeEvent(QCloseEvent* event) {
    GuardedApplication::handle([this] { m_model.Escape(); });
    QDialog::closeEvent(event);
}

HitScoreOptionView::HitScoreOptionView(frmHitScore_Option& model, QWidget* parent) : QDialog(parent) {
    setObjectName("frmHitScore_Option");
    setWindowTitle(frmHitScore_Option::Caption);
    auto* layout = new QVBoxLayout(this);
    const struct {
        const char* name;
        const char* caption;
        void (frmHitScore_Option::*choose)();
    } buttons[] = {{"cmd_LMC", frmHitScore_Option::cmd_LMC, &frmHitScore_Option::cmd_LMC_Click},
                   {"cmd_USB", frmHitScore_Option::cmd_USB, &frmHitScore_Option::cmd_USB_Click},
                   {"cmd_Cancel", frmHitScore_Option::cmd_Cancel, &frmHitScore_Option::cmd_Cancel_Click}};
    for (const auto& b : buttons) {
        auto* button = new QPushButton(b.caption);
        button->setObjectName(b.name);
        connect(button, &QPushButton::clicked, this, [this, &model, choose = b.choose] {
            (model.*choose)();
            accept();
        });
        layout->addWidget(button);
    }
}

}  // namespace halvane::app
