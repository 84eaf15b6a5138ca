"use strict";

const wordsPerSecond = 14;
const stop = document.getElementById("stop");
const waiting = [];
let writing = null; // the answer that is being written: its bubble, the words to come, its timer

function answerOf(text) {
    const words = text.split(/\s+/).length;
    return "You said: " + text + "\n\n(" + words + (words === 1 ? " word, " : " words, ") + [...text].length + " characters)";
}

function writeNextWord() {
    const wasAtEnd = isAtEnd();
    writing.bubble.textContent += writing.words.shift();
    followEnd(wasAtEnd);
    if (writing.words.length === 0) {
        endAnswer();
    }
}

function beginAnswer() {
    if (writing || waiting.length === 0) {
        return;
    }
    const wasAtEnd = isAtEnd();
    const bubble = addMessage("", false);
    bubble.classList.add("writing");
    // A screen reader gets the whole answer once, not every word of it.
    log.setAttribute("aria-busy", "true");
    const words = answerOf(waiting.shift()).match(/\s*\S+/g);
    writing = { bubble: bubble, words: words, timer: setInterval(writeNextWord, 1000 / wordsPerSecond) };
    stop.hidden = false;
    followEnd(wasAtEnd);
}

function endAnswer() {
    clearInterval(writing.timer);
    writing.bubble.classList.remove("writing");
    log.removeAttribute("aria-busy");
    writing = null;
    stop.hidden = true;
    beginAnswer();
}

onSend((text) => {
    addMessage(text, true);
    waiting.push(text);
    beginAnswer();
});

stop.addEventListener("click", () => {
    waiting.length = 0;
    if (writing) {
        writing.bubble.textContent += " …";
        endAnswer();
    }
    field.focus();
});

addMessage("Hello! Write something and I will repeat it, word by word.", false);
