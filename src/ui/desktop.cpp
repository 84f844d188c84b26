#include "ui/desktop.h"

#include <QDateTime>
#include <QEvent>
#include <QLineEdit>
#include <QLocale>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProgressBar>
#include <QStatusBar>
#include <QTimer>
#include <array>

#include "station/station_app.h"
#include "ui/window_factory.h"
#include "ui_qx_main.h"

namespace tavora::ui {

// Keeps the windows inside the frame: one laid out for a bigger screen
// shrinks to fit, down to its minimum, when it shows or the frame resizes,
// so no row of buttons ends up under the status bar.
class FrameFitter : public QObject {
  public:
    explicit FrameFitter(QMdiArea& frame) : QObject(&frame), frame_(frame) {
        frame.viewport()->installEventFilter(this);
    }
    void watch(QMdiSubWindow& window) { window.installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Resize && watched == frame_.viewport()) {
            for (QMdiSubWindow* window : frame_.subWindowList())
                if (window->isVisible()) fit(*window);
        } else if (event->type() == QEvent::Show) {
            if (auto* window = qobject_cast<QMdiSubWindow*>(watched)) fit(*window);
        }
        return false;
    }

  private:
    void fit(QMdiSubWindow& window) {
        if (window.isMaximized() || window.isMinimized()) return;
        const QSize room = frame_.viewport()->size();
        if (room.width() < 100 || room.height() < 100) return;  // not laid out yet
        const QSize size = window.size().boundedTo(room).expandedTo(window.minimumSizeHint());
        if (size != window.size()) window.resize(size);
        const int x = std::clamp(window.x(), 0, std::max(0, room.width() - size.width()));
        const int y = std::clamp(window.y(), 0, std::max(0, room.height() - size.height()));
        if (x != window.x() || y != window.y()) window.move(x, y);
    }

    QMdiArea& frame_;
};

Desktop::Desktop(StationApp& app, Binder& binder) : app_(app), binder_(binder) {
    main_ = std::make_unique<QMainWindow>();
    Ui::QXMain layout;
    layout.setupUi(main_.get());
    frame_ = layout.mdiArea;
    fitter_ = new FrameFitter(*frame_);
    add_status_panels();

    add_window(app.request);
    add_window(app.viewer, [this] {
        // The players' progress bars are the one part of the viewer that
        // isn't a control.
        QWidget* viewer = widget_of(app_.viewer);
        for (int n = 1; n <= 7; ++n) {
            auto* bar = viewer->findChild<QProgressBar*>(QString("ProgressBar1_%1").arg(n));
            if (!bar) continue;
            const auto& state = app_.viewer.ProgressBar1[static_cast<std::size_t>(n)];
            const int max = static_cast<int>(state.Max);
            const int value = static_cast<int>(state.Value);
            if (bar->maximum() != std::max(max, 1)) bar->setMaximum(std::max(max, 1));
            if (bar->value() != value) bar->setValue(std::clamp(value, 0, std::max(max, 1)));
        }
    });
    add_window(app.playback.on_air);
    for (int n = 1; n <= 7; ++n)
        add_window(app.playback.Player_Forms(n));
    for (Form* form : std::initializer_list<Form*>{
             &app.loding, &app.about, &app.setup, &app.mail, &app.form2, &app.type_lookup,
             &app.schedule, &app.advschedule, &app.tavora_db, &app.tavora_db.Wizard, &app.recorder,
             &app.browser, &app.system_info, &app.cd_player}) {
        add_window(*form);
    }
    binder_.bind(app.qx_main, *main_);
}

Desktop::~Desktop() = default;

QWidget* Desktop::widget_of(const Form& form) {
    for (const auto& [bound, widget] : widgets_)
        if (bound == &form) return widget;
    return nullptr;
}

void Desktop::add_window(Form& form, std::function<void()> extra) {
    auto* widget = new QWidget;
    if (!SetUpLayout(form.name(), *widget)) SetUpPlainLayout(form, *widget);
    QMdiSubWindow* sub = frame_->addSubWindow(widget);
    sub->setAttribute(Qt::WA_DeleteOnClose, false);
    sub->setWindowIcon(main_->windowIcon());
    sub->adjustSize();
    sub->hide();
    fitter_->watch(*sub);
    widgets_.emplace_back(&form, widget);
    binder_.bind(form, *widget, std::move(extra));
}

void Desktop::add_status_panels() {
    // Designer can't place widgets in a status bar: the eight panels are
    // made here, named as the controls Panel(1) to Panel(8). The rules write
    // their Text, so they are read-only boxes.
    QStatusBar* bar = main_->statusBar();
    std::array<QLineEdit*, 8> panels{};
    for (int n = 1; n <= 8; ++n) {
        auto* panel = new QLineEdit(bar);
        panel->setObjectName(QString("Panel_%1").arg(n));
        panel->setReadOnly(true);
        panel->setFocusPolicy(Qt::NoFocus);
        panel->setMinimumWidth(n <= 4 ? 90 : 40);
        panel->setAlignment(Qt::AlignCenter);
        bar->addPermanentWidget(panel, n <= 4 ? 2 : 1);
        panels[static_cast<std::size_t>(n - 1)] = panel;
    }
    // The first two are the date and time panels, kept by the status bar
    // itself.
    auto* clock = new QTimer(main_.get());
    const auto tell_time = [date = panels[0], time = panels[1]] {
        const QDateTime now = QDateTime::currentDateTime();
        const QLocale locale;
        date->setText(locale.toString(now.date(), QLocale::ShortFormat));
        time->setText(locale.toString(now.time(), QLocale::ShortFormat));
    };
    QObject::connect(clock, &QTimer::timeout, tell_time);
    tell_time();
    clock->start(1000);
}

}  // namespace tavora::ui
