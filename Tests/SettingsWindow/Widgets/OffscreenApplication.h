#pragma once

#include <QApplication>
#include <QLocale>

#include <gtest/gtest.h>

#include <memory>

/// Widgets on a screen that nobody sees, in English, as long as the tests of a program run. Each
/// program has one, made by
///
///     const auto *const application = testing::AddGlobalTestEnvironment(new OffscreenApplication);
class OffscreenApplication : public testing::Environment {
public:
    void SetUp() override
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        QLocale::setDefault(QLocale::English);
        _application = std::make_unique<QApplication>(_argc, _argv);
    }
    void TearDown() override { _application.reset(); }

private:
    int _argc = 1;
    char _name[5] = "test";
    char *_argv[2] = {_name, nullptr};
    std::unique_ptr<QApplication> _application;
};
