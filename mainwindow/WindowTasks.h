// What the tool window and the window of operations can be asked to show. The numbers are fixed.
#pragma once

// Of FTools; the last two share a panel.
enum class ToolTask { AddPicture = 0, PageSource = 1, PageProperties = 2, NewTable = 3, TableProperties = 4 };

// Of FOps, a panel each.
enum class OpsTask { WebPack = 0, OpenProject = 1, Email = 2 };
