// The mail control: will hold the conversation with a mail server.
#pragma once

class MailUC {
 public:
  // Ends what is under way, at the exit of the program. Nothing can be under way yet.
  void CloseDown() {}
};
