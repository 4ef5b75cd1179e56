// What the long work of the airport chooser (the scenery scan, the airport fetch) needs of
// its form: the status box, the progress bar, message boxes, the controls, the list. The
// desktop form implements it with real widgets, repainting at each change since no events
// run meanwhile; tests and quilmark-tool implement it by recording what was shown.
#pragma once

#include <string>
#include <vector>

namespace quilmark {

enum class Message_Icon { Information, Exclamation, Critical };

constexpr const char* Message_Title = "Quilmark Message";
constexpr const char* Program_Title = "Quilmark v1.1";

class Chooser_Form {
  public:
    virtual ~Chooser_Form() = default;
    // Text1, redrawn at once. Texts are Windows-1252.
    virtual void Show_Status(const std::string& text) = 0;
    // ProgressBar1; its numbers are single-precision.
    virtual float Progress_Value() const = 0;
    virtual void Set_Progress_Value(float value) = 0;
    virtual void Set_Progress_Min(float value) = 0;
    virtual void Set_Progress_Max(float value) = 0;
    virtual void Redraw_Progress() = 0;
    // A modal message box with one OK button; returns when the user has pressed it.
    virtual void Show_Message(const std::string& text, const std::string& title,
                              Message_Icon icon) = 0;
    // Combo1, Command3 and Command2 together.
    virtual void Enable_Controls(bool enabled) = 0;
    // The timer Read_Sceneries_Paths stops itself: one scan per load of the form.
    virtual void Stop_Scan_Timer() = 0;
    // Combo1 is a sorted list: the entry goes to its place in the order of Sort_List_Entries.
    virtual void Add_List_Entry(const std::string& text) = 0;
    // The whole form, repainted while no events run.
    virtual void Repaint_Form() = 0;
    // The end of GET AIRPORT: the chooser unloads and the chart opens.
    virtual void Hand_Over_To_Chart() = 0;
};

// The chooser's list order: ascending without regard to case (Windows-1252 letters), and
// entries that are equal but for case in byte order.
void Sort_List_Entries(std::vector<std::string>& entries);

struct Shown_Message {
    std::string text;
    std::string title;
    Message_Icon icon = Message_Icon::Information;
    bool operator==(const Shown_Message&) const = default;
};

// A form that remembers what it was shown and answers every message box with OK.
class Recording_Chooser_Form : public Chooser_Form {
  public:
    std::vector<std::string> status_texts; // every text, in order
    std::vector<Shown_Message> messages;
    float progress_min = 0;
    float progress_max = 100;
    float progress_value = 0;
    int progress_redraws = 0;
    bool controls_enabled = true;
    std::vector<bool> control_changes; // each call of Enable_Controls
    bool scan_timer_enabled = true;
    std::vector<std::string> list; // in the order added
    int form_repaints = 0;
    bool handed_over = false;

    void Show_Status(const std::string& text) override { status_texts.push_back(text); }
    float Progress_Value() const override { return progress_value; }
    void Set_Progress_Value(float value) override { progress_value = value; }
    void Set_Progress_Min(float value) override { progress_min = value; }
    void Set_Progress_Max(float value) override { progress_max = value; }
    void Redraw_Progress() override { ++progress_redraws; }
    void Show_Message(const std::string& text, const std::string& title,
                      Message_Icon icon) override {
        messages.push_back({text, title, icon});
    }
    void Enable_Controls(bool enabled) override {
        controls_enabled = enabled;
        control_changes.push_back(enabled);
    }
    void Stop_Scan_Timer() override { scan_timer_enabled = false; }
    void Add_List_Entry(const std::string& text) override { list.push_back(text); }
    void Repaint_Form() override { ++form_repaints; }
    void Hand_Over_To_Chart() override { handed_over = true; }

    // The list as the sorted combo box shows it.
    std::vector<std::string> Sorted_List() const;
    // The status texts with a text shown again right after itself listed once.
    std::vector<std::string> Distinct_Status_Texts() const;
};

} // namespace quilmark
