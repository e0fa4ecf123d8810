// The program with its folders, and what a test of projects looks at.
#pragma once

#include "FoldersFixture.h"

class ProjectsTest : public FoldersTest {
 protected:
  void ExpectProject(const QString& name, const QString& workPath) {
    EXPECT_EQ(name, run_.program().project.ProjectName());
    EXPECT_EQ(run_.PathInApp(workPath), run_.program().project.WorkPath());
    EXPECT_EQ("Corvane - " + name, Web().windowTitle());
  }
  void ExpectFile(const QString& path) { EXPECT_EQ(run_.PathInApp(path), run_.program().project.CurPageFile()); }
  bool IsHidden(const QString& folder) {
    return run_.test.platform.attributes.Get(run_.PathInApp(folder)).value_or(0) & AttributeHidden;
  }
};
