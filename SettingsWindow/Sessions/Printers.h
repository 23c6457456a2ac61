#pragma once

#include "Queues.h"

#include <QObject>
#include <QTimer>

#include <vector>

/// The printers of some servers, looked for again and again. Each server is asked by itself: one
/// that says nothing neither holds up nor hides those of another, and keeps those that it has told
/// before.
class Printers : public QObject {
    Q_OBJECT

public:
    /// Begins to look at once.
    /// @param servers  those of the first come first
    explicit Printers(const std::vector<Model::ServerAddress> &servers, QObject *parent = nullptr);

    /// Looks for them now; servers that are just being asked are not asked twice.
    void lookAgain();

    /// All of them, server by server, by their names.
    std::vector<Model::Queue> all() const;

    /// The printer as it was told last; null when it is not there.
    const Model::Queue *find(const Model::QueueId &id) const;

    /// How many printers of other kinds there are.
    int others() const;

    /// What is wrong with the servers, one problem for each that has any.
    std::vector<Model::Words> problems() const;

    /// Whether each server has told its printers or what is wrong.
    bool haveAllAnswered() const;

signals:
    /// A server has told its printers, or what is wrong.
    /// @param isWell  whether it has told them all
    void answered(const Model::ServerAddress &server, bool isWell);

private:
    struct Server {
        Model::ServerAddress address;
        Model::QueueList list = {};
        bool isAsked = false;
        bool hasAnswered = false;
    };

    void ask(Server &server);
    void take(Server &server, Model::QueueList list);

    std::vector<Server> _servers; ///< always the same ones
    QTimer _clock;
};
