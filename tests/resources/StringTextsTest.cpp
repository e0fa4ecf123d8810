// Every text of the string table, letter by letter.
#include <gtest/gtest.h>

#include <QList>

#include "StringTable.h"

namespace {

struct Numbered {
  int number;
  const char* text;
};

constexpr Numbered kNumbered[] = {
    {101, "Must be a number greater than 10 and not 100."},
    {102, "There must be a picture open and visible in the Picture Editor window."},
    {103, "Must be a number between 5 and 100. Recommended range is 70 to 95."},
    {104, "Error saving file."},
    {105, "File exists. Replace it?"},
    {106, "Selected Picture - Note: Image has been cropped to fit screen."},
    {107, "<HTML><HEAD><TITLE></TITLE></HEAD><BODY BGCOLOR=\"#FFFFFF\" TEXT=\"#000000\"></BODY></HTML>"},
    {108, "There is no page element currently selected."},
    {109,
     "There is no cut element to paste. (Note: Only full elements can be pasted. To add a cut text selection back in, "
     "edit the respective element.)"},
    {110, "Selected item must be a text block or image. It cannot be a partial text selection"},
    {111, "No suitable element found (text block or image) to switch with."},
    {113, "In order to make a link you must first select the text that will show as a link."},
    {114, "Select folder to make web-pack file."},
    {115, "Error. Folder does not exist."},
    {116,
     "No custom icon has been assigned or the assignment is invalid. To use this option click the Custom button and "
     "assign an icon."},
    {117, "File does not exist:"},
    {118, "File is not an icon file:"},
    {119, "File is not usable. It contains more than 1 icon."},
    {120, "File is not usable. The dimensions are not 32 x 32."},
    {121, "File is not usable. It is not 4 Bits per Pixel [16-color]."},
    {122, "File is the wrong size. It should be 766 bytes."},
    {123, "Error confirming icon suitability."},
    {124, "This icon will be used when you select the Custom option for default web-pack file icon."},
    {125, "This will discard current work if not already saved as a saved project. Proceed?"},
    {126, "Select folder to make web-pack file."},
    {127, "Folder path for web-pack file is not valid."},
    {128, "Unknown error creating web-pack file."},
    {129,
     "Error. Unable to make compressed file section of web-pack file. This may occur if the program is not running "
     "from C drive."},
    {130,
     "Error. Unable to make executable section of web-pack file. Try re-assigning web-pack file icon in Settings."},
    {131,
     "Error. Unable to assemble web-pack file in destination folder. This may occur if the program is not running from "
     "C drive. In some cases this could also happen when using pictures from another drive. Try removing such pictures "
     "from the project, then move them to C drive and re-insert them."},
    {132, "Error. No page files found to make web-pack file."},
    {133, "Error. Custom icon assignment for web-pack file is not valid."},
    {134,
     "Error. Unable to make web-pack due to open file. This may happen if a sound file is playing while web-pack file "
     "is being made."},
    {135, "<DIV ALIGN=\"center\"><FONT FACE=\"arial,helvetica\" SIZE=3><A HREF=\""},
    {136, "There is not currently a fully finished email to save."},
    {137, "There are no saved projects."},
    {138, "No project is selected."},
    {140, "Table width and height must be entered as number of pixels."},
    {141, "A file for this theme was not found. "},
    {142, " should be in the program samples subfolder."},
    {143, "<IMG SRC=\"hearttop.gif\" ID=\"heartpic\" WIDTH=400 HEIGHT=80 ALIGN=\"center\">"},
    {144,
     "Error loading icon mask. Before proceeding, try saving this image to see whether the resulting icon is "
     "distorted."},
    {145, "The help file is missing. cvn2.hlp should be in the CVN program folder."},
    {146, "Error opening the help file. Try to open cvn2.hlp directly from the program folder."},
    {147, "System not ready for network communication."},
    {148, "Winsock version 1.1 not supported."},
    {149, "A blocking winsock is already in use."},
    {150, "The limit on number of winsock tasks has been reached."},
    {151, "Error with parameter of WSAStartup call."},
    {152, "No Internet connection active. You must be online to send email."},
    {153, "Internet connection is via proxy server. Unable to send email via proxy."},
    {154, "Server address string missing."},
    {156, "From email address missing."},
    {157, "Invalid From email address."},
    {158, "To email address missing."},
    {159, "Invalid To email address."},
    {160, "Text of email is missing."},
    {161, "Winsock error - Failed to create socket. Error number:"},
    {162, "Failed to resolve server IP address."},
    {163, "Winsock error - Failed to connect to server. Error number:"},
    {164, "Winsock err - Failure with WSAAsyncSelect. Error number:"},
    {165, "This is a web greeting message made with Corvane."},
    {166, "It may only be viewed as HTML email, but your email program"},
    {167, "does not appear to read HTML format."},
    {168,
     "The From email address, To email address and server address are all required to send an email. See help for "
     "details."},
    {169, "Corvane also provides several ways to use the webpages that you make. (See next topic.)"},
    {170, "Corvane makes webpages. You don't need any experience. CVN makes it simple. "},
    {171,
     "First, you can create one or more webpages and use CVN to create a \"web-pack\" from them. That is, CVN will put "
     "them all into a single, compressed file, along with any pictures that you have used. A web-pack file is like a "
     "self-contained, self-opening website. For example, you can send it in email and the recipient can open it to see "
     "all of the webpages inside."},
    {172, "Second, you can email a webpage as HTML email, directly from CVN."},
    {173,
     "Third, you can use CVN as a webpage editor, saving your webpages as HTML files. When you save a webpage file in "
     "CVN it will also save any pictures that go with the webpage, all in a single folder."},
    {174,
     "Just click in the main window and start typing. Use the buttons in the work window to add pictures, change the "
     "background color, etc. Double-click an item in the page to select it. Right-click selected for more options."},
    {175,
     "The Work Window is the small window at bottom center. It holds the tools for working on a webpage. You can raise "
     "and lower the Work Window by clicking on its title bar."},
    {176, "Themes are preset font/background combinations that can be used to start a webpage."},
    {177,
     "Click the Page Properties button in the Work Window. In the Page Properties window you can set page background "
     "color, background picture, default font properties, etc."},
    {178,
     "The default text for the page can be set in the Page Properties window. Also, any section of text can be changed "
     "by selecting it and then using the Font Controls at top right of the main window. You can also edit text as you "
     "would in a normal text editor. Just click inside the text block."},
    {179,
     "To add a picture, click the Picture button in the Work Window. You can then browse for a picture. To remove a "
     "picture, double-click to select it, then right-click and click \"Cut\"."},
    {180,
     "A table is a rectangular frame in a webpage. A table can have its own background color and it can have a border "
     "if desired. A table can contain pictures and/or text. A table can also be made invisible by using the background "
     "color of the page. In that case a table is used to help with page layout."},
    {181,
     "You can use the Return key and space bar to move things around. You can also select any page element by "
     "double-clicking it and then use the moving buttons in the Work Window. There are also alignment options for the "
     "page and for the inside of tables. You can do most things you might want to do but you cannot completely control "
     "the layout of webpages. They just do not work that way. HTML, the code language that makes webpages work, only "
     "provides for general layout. Also, the layout will be affected by how the page is viewed. For example, you might "
     "put two pictures next to each other on your webpage, but when viewed on a smaller monitor they might appear on "
     "top of one another. You need to take that into consideration when working on a page."},
    {182,
     "Click the envelope icon on the toolbar to email the current page. Fill in To, From, etc. in the Email window and "
     "click Send. (Note: You must be online to email a page.)"},
    {183,
     "Click the gift icon on the toolbar to make a package. Select the file name and where the package file should be "
     "created. Then click OK."},
    {184, "The name Project1 cannot be used. It is the default name for unsaved projects."},
    {185, "A project is already saved with that name. Replace it?"},
    {186, "Enter name for project."},
    {187, "Do you want to save this project before closing?"},
    {188, "A cropping area must first be defined by dragging the mouse."},
};

struct Named {
  FixedText name;
  const char* text;
};

constexpr Named kNamed[] = {
    {FixedText::SaveChangesToPage, "Save changes to this page?"},
    {FixedText::ErrorLoadingImage, "Error loading image file."},
    {FixedText::OneLevelOfUndo, "Only one level of undo."},
    {FixedText::ImageCropped, "Note: Image has been cropped to fit screen."},
    {FixedText::ReplaceExistingFile, "Replace existing file?"},
    {FixedText::NoIconSelected, "No icon selected."},
    {FixedText::FileNotFound, "File not found.:"},
    {FixedText::TestOfFileFailed, "Test of file failed. Try testing the file by hand."},
    {FixedText::WebPackCreated, "Web-pack file created:"},
    {FixedText::SizeOfFileIs, "Size of file is: "},
    {FixedText::SizeUnit, " KB."},
    {FixedText::TestThisPackage, "Do you want to test this package?"},
    {FixedText::PackageIsWhole,
     "The package is whole: its pages and pictures can all be read. To see it as its recipient will, open it on "
     "Windows."},
    {FixedText::PageFileNotFound, "Error. Current page file not found."},
    {FixedText::PageFileNotRead, "Error. Unable to read current page file."},
    {FixedText::PasswordRequired, "Password required."},
    {FixedText::AlreadySaved, " is already a saved project. The current page has been updated."},
    {FixedText::DeleteProjectBefore, "Delete "},
    {FixedText::DeleteProjectAfter, " project?"},
    {FixedText::EnterUrl, "Enter URL for link."},
    {FixedText::CreateLinkTitle, "Create Link"},
    {FixedText::DiscardTitle, "Discard?"},
    {FixedText::SaveProjectTitle, "Save Project"},
    {FixedText::PreparingEmail, " Preparing to send email..."},
    {FixedText::SendingEmail, " Sending email..."},
    {FixedText::EmailSent, " Email sent."},
    {FixedText::NotEncrypted, "The connection can't be encrypted, so nothing was sent: "},
    {FixedText::EncryptionNotOffered, "The server offers no encryption (STARTTLS), so nothing was sent."},
    {FixedText::ServerSaid, "The server said: "},
    {FixedText::ServerClosed, "The server closed the connection at "},
    {FixedText::NameHasCharacter, " can't be part of a name."},
    {FixedText::NameHasControl, "A name can't hold a line end, tab or other control character."},
    {FixedText::NameIsDots, "\".\" and \"..\" can't be names."},
    {FixedText::NameEndsBadly, "A name can't end with a dot or a blank."},
    {FixedText::NameIsDevice, "Windows keeps this name for a device."},
    {FixedText::NameTooLong, "This name is too long."},
};

TEST(StringTexts, EachNumberHasExactlyItsText) {
  for (const Numbered& row : kNumbered) EXPECT_EQ(QString::fromLatin1(row.text), StringText(row.number)) << row.number;
}

TEST(StringTexts, NoOtherNumberHasOne) {
  QList<int> known;
  for (const Numbered& row : kNumbered) known.append(row.number);
  for (int number = -1; number <= 300; ++number) {
    if (known.contains(number)) continue;
    EXPECT_EQ("", StringText(number)) << number;
  }
  EXPECT_EQ(85, known.size());
}

TEST(StringTexts, EachNameHasExactlyItsText) {
  for (const Named& row : kNamed) EXPECT_EQ(QString::fromLatin1(row.text), StringText(row.name)) << int(row.name);
  EXPECT_EQ(int(FixedText::NameTooLong) + 1, int(std::size(kNamed))) << "none is left out";
}

}  // namespace
