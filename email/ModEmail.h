#pragma once

#include <QString>

class MailUC;
struct Program;

// Turns the current page's file into the message that `MUC` holds; returns "", or an error text.
QString PrepareCurrentEmail(Program& program, MailUC& MUC);
