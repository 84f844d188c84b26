#include "ui/qt_dialogs.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>

namespace tavora::ui {

namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

QMessageBox::StandardButton ButtonOf(Answer answer) {
    switch (answer) {
        case Answer::OK:
            return QMessageBox::Ok;
        case Answer::Cancel:
            return QMessageBox::Cancel;
        case Answer::Abort:
            return QMessageBox::Abort;
        case Answer::Retry:
            return QMessageBox::Retry;
        case Answer::Ignore:
            return QMessageBox::Ignore;
        case Answer::Yes:
            return QMessageBox::Yes;
        case Answer::No:
            return QMessageBox::No;
    }
    return QMessageBox::Ok;
}

QMessageBox::Icon IconOf(Icon icon) {
    switch (icon) {
        case Icon::None:
            return QMessageBox::NoIcon;
        case Icon::Critical:
            return QMessageBox::Critical;
        case Icon::Question:
            return QMessageBox::Question;
        case Icon::Exclamation:
            return QMessageBox::Warning;
        case Icon::Information:
            return QMessageBox::Information;
    }
    return QMessageBox::NoIcon;
}

QString TitleOf(const DialogRequest& request) {
    return request.title.empty() ? QtDialogs::kDefaultTitle : q(request.title);
}

}  // namespace

QString QtFilter(const std::string& filter) {
    const QStringList parts = q(filter).split('|');
    QStringList filters;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1];
        patterns.replace(';', ' ');
        filters << parts[i] + " (" + patterns + ")";
    }
    return filters.join(";;");
}

DialogReply QtDialogs::Ask(const DialogRequest& request) {
    if (before_show) before_show();
    switch (request.kind) {
        case DialogKind::Message:
            return message(request);
        case DialogKind::Input:
            return input(request);
        case DialogKind::Open:
        case DialogKind::Save:
            return file(request);
    }
    return DefaultReply(request);
}

DialogReply QtDialogs::message(const DialogRequest& request) {
    QMessageBox box(IconOf(request.icon), TitleOf(request), q(request.text), QMessageBox::NoButton,
                    parent);
    box.setTextFormat(Qt::PlainText);
    const auto answers = ButtonsOf(request.buttons);
    for (Answer answer : answers)
        box.addButton(ButtonOf(answer));
    const Answer preferred = DefaultReply(request).answer;
    box.setDefaultButton(ButtonOf(preferred));
    bool has_cancel = false;
    for (Answer answer : answers)
        has_cancel = has_cancel || answer == Answer::Cancel;
    const Answer on_close = has_cancel ? Answer::Cancel : preferred;
    box.setEscapeButton(box.button(ButtonOf(on_close)));
    box.exec();
    for (Answer answer : answers) {
        if (box.clickedButton() == box.button(ButtonOf(answer))) return {answer, {}};
    }
    return {on_close, {}};
}

DialogReply QtDialogs::input(const DialogRequest& request) {
    QInputDialog box(parent);
    box.setWindowTitle(TitleOf(request));
    box.setLabelText(q(request.text));
    box.setTextValue(q(request.default_text));
    if (box.exec() != QDialog::Accepted) return {Answer::Cancel, {}};
    return {Answer::OK, box.textValue().toStdString()};
}

DialogReply QtDialogs::file(const DialogRequest& request) {
    QFileDialog box(parent, q(request.title));
    // Qt's own dialog: the same on every desktop, and reachable by tests.
    box.setOption(QFileDialog::DontUseNativeDialog);
    const bool saving = request.kind == DialogKind::Save;
    box.setAcceptMode(saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    box.setFileMode(saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (!request.filter.empty()) box.setNameFilter(QtFilter(request.filter));
    if (!request.folder.empty()) box.setDirectory(q(paths_.ToNative(request.folder).path));
    if (!request.default_text.empty()) {
        const auto name = paths_.ToNative(request.default_text);
        box.selectFile(q(name.path));
    }
    if (box.exec() != QDialog::Accepted || box.selectedFiles().isEmpty()) {
        return {Answer::Cancel, {}};
    }
    return {Answer::OK, paths_.ToDos(box.selectedFiles().front().toStdString())};
}

}  // namespace tavora::ui
