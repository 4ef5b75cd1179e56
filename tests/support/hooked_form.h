// A recording chooser form that runs an action when the long work shows a given status
// text: to stop the work there (with the exception that running out of memory throws) or
// to change the files under it.
#pragma once

#include <functional>
#include <string>

#include "state/chooser_form.h"

namespace quilmark {

class Hooked_Chooser_Form : public Recording_Chooser_Form {
  public:
    Hooked_Chooser_Form(std::string status, std::function<void()> action)
        : at_status_(std::move(status)), action_(std::move(action)) {}

    void Show_Status(const std::string& text) override {
        Recording_Chooser_Form::Show_Status(text);
        if (text == at_status_) {
            action_();
        }
    }

  private:
    std::string at_status_;
    std::function<void()> action_;
};

} // namespace quilmark
