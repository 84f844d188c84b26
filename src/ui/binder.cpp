#include "ui/binder.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QColor>
#include <QComboBox>
#include <QDesktopServices>
#include <QEvent>
#include <QGroupBox>
#include <QHash>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTabWidget>
#include <QTextBrowser>
#include <QUrl>
#include <QWidget>

#include "ui/data_binding.h"

namespace tavora::ui {

namespace {

enum class Kind {
    Action,
    Menu,
    Button,
    Check,
    Radio,
    Label,
    Edit,
    Text,
    Combo,
    List,
    Group,
    Progress,
    Browser,
    Tabs,
    Spin,
    Other
};

Kind KindOf(QObject* object) {
    if (qobject_cast<QAction*>(object)) return Kind::Action;
    if (qobject_cast<QMenu*>(object)) return Kind::Menu;
    if (qobject_cast<QCheckBox*>(object)) return Kind::Check;
    if (qobject_cast<QRadioButton*>(object)) return Kind::Radio;
    if (qobject_cast<QAbstractButton*>(object)) return Kind::Button;
    if (qobject_cast<QLabel*>(object)) return Kind::Label;
    if (qobject_cast<QLineEdit*>(object)) return Kind::Edit;
    if (qobject_cast<QTextBrowser*>(object)) return Kind::Browser;
    if (qobject_cast<QPlainTextEdit*>(object)) return Kind::Text;
    if (qobject_cast<QComboBox*>(object)) return Kind::Combo;
    if (qobject_cast<QListWidget*>(object)) return Kind::List;
    if (qobject_cast<QGroupBox*>(object)) return Kind::Group;
    if (qobject_cast<QProgressBar*>(object)) return Kind::Progress;
    if (qobject_cast<QTabWidget*>(object)) return Kind::Tabs;
    if (qobject_cast<QSpinBox*>(object)) return Kind::Spin;
    return Kind::Other;
}

bool ShowsCaption(Kind kind) {
    switch (kind) {
        case Kind::Action:
        case Kind::Menu:
        case Kind::Button:
        case Kind::Check:
        case Kind::Radio:
        case Kind::Label:
        case Kind::Group:
            return true;
        default:
            return false;
    }
}

bool IsInput(Kind kind) {
    return kind == Kind::Edit || kind == Kind::Text || kind == Kind::Combo || kind == Kind::List ||
           kind == Kind::Browser;
}

// A system colour ("button face") keeps the layout's palette, and so does
// the untouched white of a control that isn't an input box.
bool LayoutBack(long bgr, Kind kind) {
    return (bgr & 0x80000000L) != 0 || bgr < 0 || (bgr == 0xFFFFFF && !IsInput(kind));
}

bool LayoutFore(long bgr) {
    return (bgr & 0x80000000L) != 0 || bgr <= 0;
}

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

QStringList Rows(const std::vector<std::string>& list) {
    QStringList rows;
    rows.reserve(static_cast<int>(list.size()));
    for (const auto& row : list)
        rows << q(row);
    return rows;
}

constexpr double kTwipsPerPixel = 15;

}  // namespace

QColor ColourOf(long bgr) {
    return QColor(static_cast<int>(bgr & 0xFF), static_cast<int>((bgr >> 8) & 0xFF),
                  static_cast<int>((bgr >> 16) & 0xFF));
}

std::string WidgetName(const std::string& control, int index) {
    return index < 0 ? control : control + "_" + std::to_string(index);
}

struct Binder::Binding {
    Control* control = nullptr;
    QPointer<QObject> object;
    QWidget* widget = nullptr;  // null for actions and menus
    Kind kind = Kind::Other;
    bool greyed = false;  // a menu item nothing answers yet
    QPalette palette;     // as laid out

    // What the widget shows now.
    bool first = true;
    std::string caption, text, tip;
    bool visible = true, enabled = true;
    long back = 0, fore = 0;
    int value = 0;
    std::vector<std::string> list;
    int list_index = -1;
};

struct Binder::Window {
    Form* form = nullptr;
    QPointer<QWidget> widget;
    QWidget* host = nullptr;  // the widget, or its sub-window in the frame
    std::vector<Binding> bindings;
    std::unique_ptr<DataBindings> data;  // grids and boxes on data controls
    std::function<void()> extra;

    bool first = true;
    std::string caption;
    bool visible = false;
    double left = -1, top = -1;
    int state = 0;
    int pointer = 0;
};

namespace {

// The rows of a list or combo, and its chosen row, when they changed.
template <class Widget, class Choose>
void SyncRows(Widget& widget, Binder::Binding& b, const Control& c, bool first, Choose choose) {
    if (first || c.List != b.list) {
        b.list = c.List;
        widget.clear();
        widget.addItems(Rows(c.List));
        b.list_index = -2;
    }
    if (c.ListIndex != b.list_index) {
        b.list_index = c.ListIndex;
        choose(c.ListIndex);
    }
}

}  // namespace

Binder::Binder(QtEventLoop& loop, const PathMap& paths, Launcher& launcher)
    : loop_(loop), paths_(paths), launcher_(launcher) {}

Binder::~Binder() = default;

void Binder::bind(Form& form, QWidget& widget, std::function<void()> extra) {
    auto window = std::make_unique<Window>();
    window->form = &form;
    window->widget = &widget;
    auto* sub = qobject_cast<QMdiSubWindow*>(widget.parentWidget());
    window->host = sub ? static_cast<QWidget*>(sub) : &widget;
    window->extra = std::move(extra);

    const auto entries = form.controls();
    window->bindings.reserve(entries.size());
    for (const auto& entry : entries) {
        Control& control = *entry.control;
        const QString name = q(WidgetName(control.Name, control.Index));
        QObject* object = widget.findChild<QObject*>(name);
        if (!object && window->host != &widget) object = window->host->findChild<QObject*>(name);
        if (!object) continue;
        Binding binding;
        binding.control = &control;
        binding.object = object;
        binding.widget = qobject_cast<QWidget*>(object);
        binding.kind = KindOf(object);
        binding.greyed = binding.kind == Kind::Action && !form.handles(control.Name, "Click");
        if (binding.widget) binding.palette = binding.widget->palette();
        if (auto* label = qobject_cast<QLabel*>(object)) label->setTextFormat(Qt::PlainText);
        window->bindings.push_back(std::move(binding));
    }
    for (Binding& binding : window->bindings)
        connect_signals(*window, binding);
    window->data = std::make_unique<DataBindings>(form, widget, loop_);
    if (window->data->empty()) window->data.reset();
    window->host->installEventFilter(this);
    windows_.push_back(std::move(window));
    sync_window(*windows_.back());
}

QWidget* Binder::window_of(const Form& form) const {
    for (const auto& window : windows_)
        if (window->form == &form) return window->host;
    return nullptr;
}

void Binder::fire(Form& form, Control& control, const char* event) {
    const std::string name = control.Name;
    const int index = control.Index;
    loop_.run_event([&form, &control, name, index, event] {
        if (!control.Enabled) return;
        form.fire(name, index, event);
    });
}

void Binder::connect_signals(Window& window, Binding& b) {
    Form& form = *window.form;
    Control& c = *b.control;
    QObject* o = b.object;
    switch (b.kind) {
        case Kind::Action:
            connect(static_cast<QAction*>(o), &QAction::triggered, this,
                    [this, &form, &c] { fire(form, c, "Click"); });
            break;
        case Kind::Menu:
            connect(static_cast<QMenu*>(o), &QMenu::aboutToShow, this,
                    [this, &form, &c] { fire(form, c, "Click"); });
            break;
        case Kind::Check:
            connect(static_cast<QCheckBox*>(o), &QCheckBox::clicked, this, [this, &form, &c, o] {
                const int state = static_cast<QCheckBox*>(o)->checkState() == Qt::Checked ? 1 : 0;
                loop_.run_event([&c, state] {
                    if (c.Enabled) c.Value = state;
                });
                fire(form, c, "Click");
            });
            break;
        case Kind::Radio:
            connect(static_cast<QRadioButton*>(o), &QRadioButton::clicked, this, [this, &form, &c] {
                loop_.run_event([&c] {
                    if (c.Enabled) c.Value = -1;
                });
                fire(form, c, "Click");
            });
            break;
        case Kind::Button:
            connect(static_cast<QAbstractButton*>(o), &QAbstractButton::clicked, this,
                    [this, &form, &c] { fire(form, c, "Click"); });
            break;
        case Kind::Label:
            o->installEventFilter(this);
            break;
        case Kind::Edit: {
            auto* edit = static_cast<QLineEdit*>(o);
            connect(edit, &QLineEdit::textEdited, this, [this, &form, &c, &b](const QString& text) {
                loop_.run_event([&c, &b, value = text.toStdString()] {
                    if (!c.Enabled) return;
                    c.Text = value;
                    b.text = value;
                });
                fire(form, c, "Change");
            });
            connect(edit, &QLineEdit::editingFinished, this,
                    [this, &form, &c] { fire(form, c, "LostFocus"); });
            break;
        }
        case Kind::Text: {
            auto* edit = static_cast<QPlainTextEdit*>(o);
            connect(edit, &QPlainTextEdit::textChanged, this, [this, &form, &c, &b, edit] {
                const std::string value = edit->toPlainText().toStdString();
                if (value == b.text) return;  // our own sync
                loop_.run_event([&c, &b, value] {
                    if (!c.Enabled) return;
                    c.Text = value;
                    b.text = value;
                });
                fire(form, c, "Change");
            });
            break;
        }
        case Kind::Combo: {
            auto* combo = static_cast<QComboBox*>(o);
            connect(combo, &QComboBox::activated, this, [this, &form, &c, &b, combo](int row) {
                loop_.run_event([&c, &b, row, value = combo->itemText(row).toStdString()] {
                    if (!c.Enabled) return;
                    c.ListIndex = b.list_index = row;
                    c.Text = b.text = value;
                });
                fire(form, c, "Click");
            });
            if (combo->isEditable()) {
                connect(combo->lineEdit(), &QLineEdit::textEdited, this,
                        [this, &form, &c, &b](const QString& text) {
                            loop_.run_event([&c, &b, value = text.toStdString()] {
                                if (!c.Enabled) return;
                                c.Text = b.text = value;
                            });
                            fire(form, c, "Change");
                        });
            }
            break;
        }
        case Kind::List: {
            auto* list = static_cast<QListWidget*>(o);
            auto pick = [this, &c, &b, list] {
                const int row = list->currentRow();
                loop_.run_event([&c, &b, row] {
                    if (!c.Enabled || row < 0 || row >= static_cast<int>(c.List.size())) return;
                    c.ListIndex = b.list_index = row;
                    c.Text = c.List[static_cast<std::size_t>(row)];
                });
            };
            connect(list, &QListWidget::itemClicked, this, [this, &form, &c, pick] {
                pick();
                fire(form, c, "Click");
            });
            connect(list, &QListWidget::itemDoubleClicked, this, [this, &form, &c, pick] {
                pick();
                fire(form, c, "DblClick");
            });
            break;
        }
        case Kind::Browser: {
            auto* browser = static_cast<QTextBrowser*>(o);
            browser->setOpenLinks(false);
            connect(browser, &QTextBrowser::anchorClicked, this,
                    [this, &window, &b](const QUrl& url) { open_link(window, b, url); });
            break;
        }
        case Kind::Tabs: {
            // A tab strip is a list of pages (its ListIndex) or a plain
            // control whose Value is the page in front.
            auto* tabs = static_cast<QTabWidget*>(o);
            connect(tabs, &QTabWidget::currentChanged, this, [this, &form, &c, &b](int page) {
                if (page == b.value) return;  // our own sync
                b.value = page;
                loop_.run_event([&c, page] {
                    if (!c.Enabled) return;
                    if (c.List.empty()) {
                        c.Value = page;
                    } else {
                        c.ListIndex = page;
                    }
                });
                fire(form, c, "Click");
            });
            break;
        }
        case Kind::Spin: {
            // An up-down control: its arrows are events, it holds no value.
            auto* spin = static_cast<QSpinBox*>(o);
            spin->setRange(-1, 1);
            spin->setValue(0);
            connect(spin, &QSpinBox::valueChanged, this, [this, &form, &c, spin](int step) {
                if (step == 0) return;
                const QSignalBlocker quiet(spin);
                spin->setValue(0);
                fire(form, c, step > 0 ? "UpClick" : "DownClick");
                fire(form, c, "Change");
            });
            break;
        }
        case Kind::Group:
        case Kind::Progress:
        case Kind::Other:
            break;
    }
    if (b.widget && form.handles(c.Name, "KeyPress")) b.widget->installEventFilter(this);
}

void Binder::open_link(Window& window, Binding& b, const QUrl& url) {
    // Pages of this machine stay in the window; the web goes to the
    // desktop's browser.
    if (url.isLocalFile() || url.isRelative()) {
        auto* browser = static_cast<QTextBrowser*>(b.object.data());
        const QUrl target = browser->source().resolved(url);
        const std::string native = target.toLocalFile().toStdString();
        loop_.run_event([&window, &b, dos = paths_.ToDos(native)] {
            b.control->Text = dos;
            (void)window;
        });
        return;
    }
    launcher_.Start("xdg-open \"" + url.toString().toStdString() + "\"");
}

bool Binder::eventFilter(QObject* watched, QEvent* event) {
    for (auto& window : windows_) {
        if (watched == window->host) {
            switch (event->type()) {
                case QEvent::Close: {
                    event->ignore();
                    Form* form = window->form;
                    loop_.run_event([form] { form->close(); });
                    return true;
                }
                case QEvent::Move:
                case QEvent::Resize: {
                    // The rules place windows beside each other by these.
                    Form& form = *window->form;
                    const QRect frame = window->host->geometry();
                    form.Left = window->left = frame.x() * kTwipsPerPixel;
                    form.Top = window->top = frame.y() * kTwipsPerPixel;
                    form.Width = frame.width() * kTwipsPerPixel;
                    form.Height = frame.height() * kTwipsPerPixel;
                    return false;
                }
                default:
                    return false;
            }
        }
        for (Binding& b : window->bindings) {
            if (watched != b.object) continue;
            Form& form = *window->form;
            Control& c = *b.control;
            if (event->type() == QEvent::MouseButtonRelease && b.kind == Kind::Label) {
                fire(form, c, "Click");
            } else if (event->type() == QEvent::KeyPress) {
                const QString text = static_cast<QKeyEvent*>(event)->text();
                if (text.isEmpty()) return false;
                const int key = text.at(0).unicode();
                const std::string name = c.Name;
                const int index = c.Index;
                loop_.run_event([&form, &c, name, index, key] {
                    if (!c.Enabled) return;
                    form.KeyAscii = key;
                    form.fire(name, index, "KeyPress");
                });
            }
            return false;
        }
    }
    return false;
}

void Binder::sync() {
    for (auto& window : windows_)
        sync_window(*window);
}

namespace {

void ApplyColours(Binder::Binding& b, long back, long fore);

}  // namespace

void Binder::sync_window(Window& w) {
    if (!w.widget) return;
    Form& form = *w.form;
    QWidget& host = *w.host;
    if (w.first || form.Caption != w.caption) {
        w.caption = form.Caption;
        host.setWindowTitle(q(form.Caption));
    }
    if (w.first || form.MousePointer != w.pointer) {
        w.pointer = form.MousePointer;
        if (form.MousePointer == 11) {
            host.setCursor(Qt::WaitCursor);
        } else {
            host.unsetCursor();
        }
    }
    if (!w.first && (form.Left != w.left || form.Top != w.top)) {
        w.left = form.Left;
        w.top = form.Top;
        host.move(static_cast<int>(form.Left / kTwipsPerPixel),
                  static_cast<int>(form.Top / kTwipsPerPixel));
    }
    // A hidden window is brought up to date when it shows.
    if (!form.Visible && !w.visible && !w.first) return;

    for (Binding& b : w.bindings) {
        if (!b.object) continue;
        Control& c = *b.control;
        const bool first = b.first;
        b.first = false;
        if (first || c.Visible != b.visible) {
            b.visible = c.Visible;
            if (b.kind == Kind::Action) {
                static_cast<QAction*>(b.object.data())->setVisible(c.Visible);
            } else if (b.kind == Kind::Menu) {
                static_cast<QMenu*>(b.object.data())->menuAction()->setVisible(c.Visible);
            } else {
                b.widget->setVisible(c.Visible);
            }
        }
        if (first || c.Enabled != b.enabled) {
            b.enabled = c.Enabled;
            const bool on = c.Enabled && !b.greyed;
            if (b.kind == Kind::Action) {
                static_cast<QAction*>(b.object.data())->setEnabled(on);
            } else if (b.kind == Kind::Menu) {
                static_cast<QMenu*>(b.object.data())->menuAction()->setEnabled(on);
            } else {
                b.widget->setEnabled(on);
            }
        }
        if (first || c.ToolTipText != b.tip) {
            b.tip = c.ToolTipText;
            if (b.kind == Kind::Action) {
                static_cast<QAction*>(b.object.data())->setToolTip(q(c.ToolTipText));
            } else if (b.widget) {
                b.widget->setToolTip(q(c.ToolTipText));
            }
        }
        if (b.widget && (first || c.BackColor != b.back || c.ForeColor != b.fore)) {
            ApplyColours(b, c.BackColor, c.ForeColor);
        }
        // A caption no rule has set yet leaves the layout's words.
        if (ShowsCaption(b.kind) && c.Caption != b.caption) {
            b.caption = c.Caption;
            const QString caption = q(c.Caption);
            switch (b.kind) {
                case Kind::Action:
                    static_cast<QAction*>(b.object.data())->setText(caption);
                    break;
                case Kind::Menu:
                    static_cast<QMenu*>(b.object.data())->setTitle(caption);
                    break;
                case Kind::Label:
                    static_cast<QLabel*>(b.object.data())->setText(caption);
                    break;
                case Kind::Group:
                    static_cast<QGroupBox*>(b.object.data())->setTitle(caption);
                    break;
                default:
                    static_cast<QAbstractButton*>(b.object.data())->setText(caption);
                    break;
            }
        }
        switch (b.kind) {
            case Kind::Check:
                if (first || c.Value != b.value) {
                    b.value = c.Value;
                    static_cast<QCheckBox*>(b.object.data())
                        ->setCheckState(c.Value == 1   ? Qt::Checked
                                        : c.Value == 2 ? Qt::PartiallyChecked
                                                       : Qt::Unchecked);
                }
                break;
            case Kind::Radio:
                if (first || c.Value != b.value) {
                    b.value = c.Value;
                    static_cast<QRadioButton*>(b.object.data())->setChecked(c.Value != 0);
                }
                break;
            case Kind::Progress:
                if (first || c.Value != b.value) {
                    b.value = c.Value;
                    static_cast<QProgressBar*>(b.object.data())->setValue(c.Value);
                }
                break;
            case Kind::Edit:
                if (first || c.Text != b.text) {
                    b.text = c.Text;
                    static_cast<QLineEdit*>(b.object.data())->setText(q(c.Text));
                }
                break;
            case Kind::Text:
                if (first || c.Text != b.text) {
                    b.text = c.Text;
                    static_cast<QPlainTextEdit*>(b.object.data())->setPlainText(q(c.Text));
                }
                break;
            case Kind::Browser:
                if (first || c.Text != b.text) {
                    b.text = c.Text;
                    const auto page = paths_.ToNative(c.Text);
                    const QUrl url = page.status == PathMap::Status::Mapped
                                         ? QUrl::fromLocalFile(q(page.path))
                                         : QUrl(q(c.Text));
                    auto* browser = static_cast<QTextBrowser*>(b.object.data());
                    if (c.Text.empty()) {
                        browser->clear();
                    } else {
                        browser->setSource(url);
                    }
                }
                break;
            case Kind::Combo: {
                auto* combo = static_cast<QComboBox*>(b.object.data());
                SyncRows(*combo, b, c, first, [combo](int row) { combo->setCurrentIndex(row); });
                if (combo->isEditable() && (first || c.Text != b.text)) {
                    b.text = c.Text;
                    combo->setEditText(q(c.Text));
                }
                break;
            }
            case Kind::List: {
                auto* list = static_cast<QListWidget*>(b.object.data());
                SyncRows(*list, b, c, first, [list](int row) { list->setCurrentRow(row); });
                break;
            }
            case Kind::Tabs: {
                auto* tabs = static_cast<QTabWidget*>(b.object.data());
                if (first || c.List != b.list) {
                    b.list = c.List;
                    for (int page = 0;
                         page < std::min(tabs->count(), static_cast<int>(c.List.size())); ++page)
                        tabs->setTabText(page, q(c.List[static_cast<std::size_t>(page)]));
                }
                const int page = c.List.empty() ? c.Value : c.ListIndex;
                if ((first || page != b.value) && page >= 0 && page < tabs->count()) {
                    b.value = page;
                    tabs->setCurrentIndex(page);
                }
                break;
            }
            default:
                break;
        }
    }
    if (w.data) w.data->sync();
    if (w.extra) w.extra();

    if (w.first || form.Visible != w.visible) {
        w.visible = form.Visible;
        if (form.Visible) {
            host.show();
            host.raise();
        } else {
            host.hide();
        }
    }
    if (w.first || form.WindowState != w.state) {
        w.state = form.WindowState;
        if (form.Visible) {
            if (form.WindowState == 1) host.showMinimized();
            if (form.WindowState == 2) {
                // Without a window manager (a kiosk, Xvfb) maximising does
                // nothing: the frame takes the screen itself.
                if (!host.parentWidget() && host.screen())
                    host.setGeometry(host.screen()->availableGeometry());
                host.showMaximized();
            }
        }
    }
    w.first = false;
}

namespace {

void ApplyColours(Binder::Binding& b, long back, long fore) {
    b.back = back;
    b.fore = fore;
    QPalette palette = b.palette;
    const bool own_back = !LayoutBack(back, b.kind);
    const bool own_fore = !LayoutFore(fore);
    QPalette::ColorRole back_role = QPalette::Window;
    QPalette::ColorRole fore_role = QPalette::WindowText;
    if (b.kind == Kind::Button) {
        back_role = QPalette::Button;
        fore_role = QPalette::ButtonText;
    } else if (IsInput(b.kind)) {
        back_role = QPalette::Base;
        fore_role = QPalette::Text;
    }
    if (own_back) palette.setColor(back_role, ColourOf(back));
    if (own_fore) palette.setColor(fore_role, ColourOf(fore));
    if (b.kind == Kind::Label || b.kind == Kind::Check || b.kind == Kind::Radio ||
        b.kind == Kind::Other) {
        b.widget->setAutoFillBackground(own_back);
    }
    b.widget->setPalette(palette);
}

}  // namespace

}  // namespace tavora::ui
