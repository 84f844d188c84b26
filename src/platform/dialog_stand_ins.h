#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/dialogs.h"

namespace tavora {

using LogSink = std::function<void(const std::string& line)>;

// Dialogs for tests and the simulator: each dialog takes the next queued
// reply, or its default when none fits, and is recorded with its words so a
// test can assert exactly what the operator would have seen.
class ScriptedDialogs : public Dialogs {
  public:
    struct Shown {
        DialogRequest request;
        DialogReply reply;
        bool scripted = false;  // false: the default was taken
    };

    // With a sink, every dialog is also written there as one line.
    explicit ScriptedDialogs(LogSink sink = {}) : sink_(std::move(sink)) {}

    // A button for the next message box. For an input or file dialog, OK
    // takes its default text and Cancel gives an empty one.
    void Queue(Answer answer) { queued_.push_back({answer, {}, false}); }
    // OK with this text, for the next input or file dialog; a message box
    // never takes it.
    void QueueText(std::string text) { queued_.push_back({Answer::OK, std::move(text), true}); }

    DialogReply Ask(const DialogRequest& request) override;

    const std::vector<Shown>& shown() const { return shown_; }
    // Replies queued and not yet taken. A reply that doesn't fit the next
    // dialog stays here, which a test can catch.
    std::size_t pending() const { return queued_.size(); }

  private:
    struct Queued {
        Answer answer;
        std::string text;
        bool has_text;
    };
    bool Fits(const Queued& q, const DialogRequest& request) const;

    LogSink sink_;
    std::deque<Queued> queued_;
    std::vector<Shown> shown_;
};

// The headless station's dialogs: nobody is there to answer, so every
// dialog takes its default and is written to the log.
class LoggingDialogs : public Dialogs {
  public:
    explicit LoggingDialogs(LogSink sink) : sink_(std::move(sink)) {}
    DialogReply Ask(const DialogRequest& request) override;

  private:
    LogSink sink_;
};

}  // namespace tavora
