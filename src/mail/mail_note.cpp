#include "mail/mail_note.h"

#include <algorithm>
#include <utility>

namespace skv {

namespace {

// Of a text in a box; more would make the box slow to open and no easier to read.
constexpr std::size_t longestText = 100000;
// Of a line above it, what is shown of its two ends.
constexpr std::size_t longestEnd = 100;
// What is longer scrolls.
constexpr std::size_t shortText = 1000;
constexpr int shortLines = 20;

// Where the character begins to which the byte at `place` belongs.
std::size_t characterAt(const std::string& text, std::size_t place) {
  while (place > 0 && (static_cast<unsigned char>(text[place]) & 0xC0U) == 0x80U) --place;
  return place;
}

void cut(std::string& text, std::size_t most) {
  if (text.size() > most) text.resize(characterAt(text, most));
}

// The end counts most: a sender's address stands there, the add-on of a subject, a file's size.
void cutTheMiddle(std::string& line) {
  if (line.size() <= 2 * longestEnd) return;
  const std::size_t begin = characterAt(line, longestEnd);
  const std::size_t end = characterAt(line, line.size() - longestEnd);
  line.replace(begin, end - begin, " ... ");
}

std::string headOf(const MailMessage& mail, const std::string& file) {
  std::string head;
  for (const auto& [label, value] : {std::pair("From: ", mail.GetSender()),
                                     {"Subject: ", mail.GetSubject()},
                                     {"File: ", file}}) {
    std::string line = value;
    cutTheMiddle(line);
    if (!line.empty()) head += label + line + "\r\n";
  }
  return head;
}

}  // namespace

bool showNote(App& app, const MailMessage& mail, std::string text, const std::string& file,
              NoteFor use) {
  const std::size_t whole = text.size();
  cut(text, longestText);
  if (text.size() < whole)
    text += "\n\n[The message goes on: " + std::to_string(whole) + " bytes in all.]";
  ui::Box box{.text = headOf(mail, file)};
  if (text.size() > shortText || std::ranges::count(text, '\n') > shortLines)
    box.details = text;
  else if (text.find_first_not_of(" \t\r\n") != std::string::npos)
    box.text += "\r\n" + text;
  if (use == NoteFor::installing) {
    box.buttons = ui::BoxButtons::yesNo;
    box.yes = "Install";
    box.no = "Skip";
  }
  return app.windows.messageBox(box) != ui::Answer::no;
}

std::string inWords(std::uint64_t bytes) {
  if (bytes == 0) return {};
  constexpr std::uint64_t kilo = 1024, mega = kilo * kilo;
  const std::uint64_t tenths = bytes * 10 / mega;
  return " (about " +
         (tenths == 0 ? std::to_string((bytes + kilo - 1) / kilo) + " KB"
                      : std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB") +
         ")";
}

}  // namespace skv
