#include "simulation/simulated_range_window.h"

#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "simulation/simulated_range.h"

namespace halvane::app {

namespace {
constexpr int kTilesPerRow = 4;

// The tile colours of the faces, as the Program grid shows the same words.
QString faceStyle(sim::Face face) {
    switch (face) {
        case sim::Face::Friend:
            return "background:#ff0000; color:black;";
        case sim::Face::Foe:
            return "background:#00ff00; color:black;";
        case sim::Face::Edge:
            return "background:#ffff00; color:black;";
        default:
            return "background:#c8c8c8; color:black;";
    }
}

const char* faceWord(sim::Face face) {
    switch (face) {
        case sim::Face::Friend:
            return "Friend";
        case sim::Face::Foe:
            return "Foe";
        case sim::Face::Edge:
            return "Edge";
        default:
            return "Down";
    }
}
}  // namespace

SimulatedRangeWindow::SimulatedRangeWindow(SimulatedRange& range, QWidget* parent)
    : QWidget(parent, Qt::Window), m_range(range) {
    setWindowTitle("Simulated range");
    setObjectName("SimulatedRange");
    auto* layout = new QVBoxLayout(this);
    auto* places = new QLabel(range.places().join("\n"));
    places->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(places);
    auto* hint = new QLabel("Click a target to register a hit on it.");
    layout->addWidget(hint);
    auto* tiles = new QGridLayout;
    const auto targets = range.range().snapshot();
    for (std::size_t i = 0; i < targets.size(); ++i) {
        auto* tile = new QPushButton;
        tile->setObjectName(QString("target%1").arg(targets[i].slot));
        tile->setMinimumSize(110, 64);
        const int slot = targets[i].slot;
        connect(tile, &QPushButton::clicked, this, [this, slot] {
            m_range.range().addHit(slot);
            refresh();
        });
        tiles->addWidget(tile, static_cast<int>(i) / kTilesPerRow, static_cast<int>(i) % kTilesPerRow);
        m_tiles.push_back(tile);
    }
    layout->addLayout(tiles);
    m_log = new QPlainTextEdit;
    m_log->setObjectName("frameLog");
    m_log->setReadOnly(true);
    m_log->setMaximumBlockCount(5000);
    m_log->setFont(QFont("monospace"));
    layout->addWidget(m_log, 1);
    connect(&range, &SimulatedRange::logged, this,
            [this](const QString& line) { m_log->appendPlainText(line); });
    connect(&m_timer, &QTimer::timeout, this, &SimulatedRangeWindow::refresh);
    m_timer.start(100);
    resize(520, 640);
    refresh();
}

void SimulatedRangeWindow::refresh() {
    const auto targets = m_range.range().snapshot();
    for (std::size_t i = 0; i < targets.size() && i < m_tiles.size(); ++i) {
        const auto& t = targets[i];
        m_tiles[i]->setText(QString("Target %1\n%2\nHits %3  S/N %4")
                                .arg(t.number)
                                .arg(faceWord(t.face))
                                .arg(t.hits)
                                .arg(t.serial));
        m_tiles[i]->setStyleSheet(faceStyle(t.face));
    }
}

QString SimulatedRangeWindow::logText() const {
    return m_log->toPlainText();
}

}  // namespace halvane::app
