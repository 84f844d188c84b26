#include "core/forms/form.h"

#include <cstdlib>

namespace tavora {

Form::Form(std::string name) : name_(std::move(name)) {}

Control& Form::add(std::string control, int index, Kind kind) {
    auto key = std::make_pair(control, index);
    auto made = std::make_unique<Control>();
    made->Name = std::move(control);
    made->Index = index;
    auto [it, inserted] = controls_.emplace(key, Owned{std::move(made), kind});
    if (inserted) order_.push_back(std::move(key));
    return *it->second.control;
}

Control* Form::find(std::string_view control, int index) {
    auto it = controls_.find({std::string(control), index});
    return it == controls_.end() ? nullptr : it->second.control.get();
}

const Control* Form::find(std::string_view control, int index) const {
    auto it = controls_.find({std::string(control), index});
    return it == controls_.end() ? nullptr : it->second.control.get();
}

void Form::on(std::string control, std::string event, Handler handler) {
    handlers_[{std::move(control), std::move(event)}] = std::move(handler);
}

bool Form::fire(std::string_view control, int index, std::string_view event) {
    if (!find(control, index)) return false;
    auto it = handlers_.find({std::string(control), std::string(event)});
    if (it == handlers_.end()) return false;
    it->second(index);
    return true;
}

bool Form::set(std::string_view control, int index, const std::string& value) {
    auto it = controls_.find({std::string(control), index});
    if (it == controls_.end()) return false;
    Control& c = *it->second.control;
    switch (it->second.kind) {
        case Kind::TextBox:
        case Kind::Plain:
            c.Text = value;
            fire(control, index, "Change");
            return true;
        case Kind::CheckBox: {
            char* end = nullptr;
            long v = std::strtol(value.c_str(), &end, 10);
            if (value.empty() || *end != '\0' || v < 0 || v > 2) return false;
            c.Value = static_cast<int>(v);
            fire(control, index, "Click");
            return true;
        }
        case Kind::List:
            for (std::size_t row = 0; row < c.List.size(); ++row) {
                if (c.List[row] == value) {
                    c.ListIndex = static_cast<int>(row);
                    c.Text = value;
                    fire(control, index, "Click");
                    return true;
                }
            }
            return false;
    }
    return false;
}

bool Form::handles(std::string_view control, std::string_view event) const {
    return handlers_.count({std::string(control), std::string(event)}) > 0;
}

std::vector<Form::Entry> Form::controls() const {
    std::vector<Entry> entries;
    entries.reserve(order_.size());
    for (const auto& key : order_) {
        const Owned& owned = controls_.at(key);
        entries.push_back({owned.control.get(), owned.kind});
    }
    return entries;
}

void Form::add_data(std::string name, DataControl& control, std::function<void()> reposition) {
    data_[std::move(name)] = DataLink{&control, std::move(reposition)};
}

const Form::DataLink* Form::data(std::string_view name) const {
    const auto it = data_.find(name);
    return it == data_.end() ? nullptr : &it->second;
}

bool Form::close() {
    if (QueryUnload && !QueryUnload()) return false;
    Visible = false;
    return true;
}

}  // namespace tavora
