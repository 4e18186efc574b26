// Says where the widgets of the running program are and what they show, so that tests can use the window with
// real mouse and keyboard as a person does. It does nothing to the window itself.
#pragma once

namespace qx::desktop {

// From now on each line of standard input is a question, answered by one line of JSON on standard output:
//
// - windows: the names and titles of the windows that are shown, the active one last
// - where NAME: {"x","y","width","height","enabled","focus"} in pixels of the screen; null when none is shown
// - rows NAME: of a list, what its rows say and where those in sight are: [{"text","x","y","width","height"}]
// - say NAME: {"text"}, the value or the label of a widget
// - focus: the name of the widget that has the keyboard
// - called: what a screen reader calls that widget
// - ping: true, from the thread that draws
// - pid: the number of this process
//
// NAME is a widget's name, "NAME#2" the second button inside it, "=Save" the widget with that caption.
// A window that stands on another one, such as a dialog, is asked first. User-interface thread.
void StartProbe();

}  // namespace qx::desktop
