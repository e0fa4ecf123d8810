// A page as people write it, of any size.
#pragma once

#include <QByteArray>

// A letter in blocks of text with a table now and then, of at least `size` bytes.
inline QByteArray MakePage(int size) {
  static const char* const faces[] = {"Arial, Helvetica", "Verdana, Arial, Helvetica", "Times New Roman"};
  static const char* const colors[] = {"#000000", "#003366", "#993300", "#336633"};
  QByteArray page =
      "<html><head><title>Letter</title></head><body bgcolor=\"#FFFFFF\" text=\"#000000\" link=\"#0000FF\" "
      "vlink=\"#0000FF\" style=\"font-size: 12pt; font-family: Arial, Helvetica\">";
  for (int block = 0; page.size() < size; ++block) {
    page += QByteArray("<FONT FACE=\"") + faces[block % 3] + "\" SIZE=3 COLOR=\"" + colors[block % 4] +
            "\">Dear friends, this is part " + QByteArray::number(block) +
            " of a long letter. The <B>garden</B> is in flower, and everybody sends greetings.</FONT><BR>";
    if (block % 12 == 11)
      page +=
          "<TABLE BORDER=1 "
          "WIDTH=300><TR><TD>Monday</TD><TD>Rain</TD></TR><TR><TD>Tuesday</TD><TD>Sun</TD></TR></TABLE><BR>";
  }
  return page + "</body></html>";
}

// Blocks of two thousand letters each: many bytes in few nodes.
inline QByteArray MakeTextPage(int size) {
  QByteArray page = "<html><head><title>Text</title></head><body bgcolor=\"#FFFFFF\" text=\"#000000\">";
  for (int block = 0; page.size() < size; ++block) {
    QByteArray text = "This is part " + QByteArray::number(block) + " of a long story.";
    while (text.size() < 2000) text += " The garden is in flower, and everybody sends greetings.";
    page += "<P><FONT SIZE=3>" + text + "</FONT></P>";
  }
  return page + "</body></html>";
}
