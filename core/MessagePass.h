#pragma once

// Lets the pending window messages run once.
void RunMessagePass();
