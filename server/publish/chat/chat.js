"use strict";

// What the two chat pages share: the list of messages and the field below it.

const log = document.getElementById("log");
const form = document.getElementById("form");
const field = document.getElementById("text");

// Adds one message at the end and returns the bubble that holds its text. A reader who has scrolled up stays there.
function addMessage(text, isMine, note) {
    const item = document.createElement("li");
    item.className = isMine ? "mine" : "theirs";
    const bubble = document.createElement("p");
    bubble.className = "bubble";
    bubble.textContent = text;
    item.append(bubble);
    if (note) {
        const line = document.createElement("small");
        line.textContent = note;
        item.append(line);
    }
    log.append(item);
    if (isMine) {
        log.scrollTop = log.scrollHeight;
    }
    return bubble;
}

function isAtEnd() {
    return log.scrollHeight - log.scrollTop - log.clientHeight < 60;
}

function followEnd(wasAtEnd) {
    if (wasAtEnd) {
        log.scrollTop = log.scrollHeight;
    }
}

// Enter sends, Shift and Enter begin a new line; Enter that ends the choice of an input method does neither.
function onSend(send) {
    field.addEventListener("keydown", (event) => {
        if (event.key === "Enter" && !event.shiftKey && !event.isComposing) {
            event.preventDefault();
            form.requestSubmit();
        }
    });
    form.addEventListener("submit", (event) => {
        event.preventDefault();
        const text = field.value.trim();
        if (text) {
            field.value = "";
            send(text);
        }
        field.focus();
    });
}
