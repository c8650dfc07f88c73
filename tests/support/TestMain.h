#pragma once

#include "app/Identity.h"

#include <QApplication>
#include <QtTest>

/// Runs a test class in an application with the panel's identity and look.
template <class Test>
int runTest(int argc, char** argv)
{
    QApplication application(argc, argv);
    identity::apply();
    identity::applyLook(application);
    QApplication::setQuitOnLastWindowClosed(false);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

#define QN740_TEST_MAIN(Test)                                                                      \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        return runTest<Test>(argc, argv);                                                          \
    }
