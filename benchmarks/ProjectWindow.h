// The main window on a project of the figures' own, worked as a person works it and timed until the page is ready.
#pragma once

#include <QComboBox>
#include <QElapsedTimer>
#include <memory>

#include "FWeb.h"
#include "HostedWebBrowser.h"
#include "TestPlatform.h"
#include "Waiting.h"

constexpr QSize kWindow(1024, 768);

class ProjectWindow {
 public:
  explicit ProjectWindow(TestProgram& test)
      : web_(test.program, [](QWidget* parent) { return std::make_unique<HostedWebBrowser>(parent); }) {
    test.program.AppStarted = true;
    web_.resize(kWindow);
    web_.showNormal();
    Pause(1000);
  }

  FWeb& web() { return web_; }
  WBUC& view() { return *web_.jWB; }

  // Milliseconds until the other page can be edited; the one before has been written.
  double SwitchTo(int page, int restMs = 200) {
    QElapsedTimer clock;
    Wait ready;
    const auto connection = QObject::connect(web_.jWB, &WBUC::DocComplete, &web_, [&ready] { ready.Done(); });
    clock.start();
    web_.BoxPage->setCurrentIndex(page - 1);
    ready.Run("our page");
    const double ms = double(clock.nsecsElapsed()) / 1e6;
    QObject::disconnect(connection);
    Pause(restMs);
    return ms;
  }

 private:
  FWeb web_;
};
